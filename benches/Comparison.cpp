#include "benches/Comparison.h"

#include <algorithm>
#include <cstdio>

namespace snip::bench {
namespace {

/// The last fields of a line: limit, verdict and reason.
std::string Judged(double value, const std::optional<Limit>& limit, const std::string& unit) {
  if (!limit) return "|-|";
  char most[40]{};
  std::snprintf(most, sizeof most, "%.4g", limit->most);
  return most + (" " + unit) + (value <= limit->most ? "|reached|" : "|MISSED|") + limit->reason;
}

}  // namespace

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void PrintRatio(const std::string& work, const Comparison& comparison, const std::optional<Limit>& limit) {
  std::vector<double> ratios;
  for (std::size_t run = 0; run < comparison.measured.size(); ++run) {
    ratios.push_back(comparison.measured[run] / comparison.reference[run]);
  }
  const auto [lowest, highest] = std::minmax_element(ratios.begin(), ratios.end());
  std::printf("%s|%.3g ms|%.3g ms|%.2f x|%.2f..%.2f|%s\n", work.c_str(), Median(comparison.measured),
              Median(comparison.reference), comparison.Ratio(), *lowest, *highest,
              Judged(comparison.Ratio(), limit, "x").c_str());
  std::fflush(stdout);
}

void PrintValue(const std::string& work, double value, const std::optional<Limit>& limit,
                const std::string& unit) {
  std::printf("%s|%.4g %s||||%s\n", work.c_str(), value, unit.c_str(), Judged(value, limit, unit).c_str());
  std::fflush(stdout);
}

}  // namespace snip::bench
