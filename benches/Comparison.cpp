#include "benches/Comparison.h"

#include <algorithm>
#include <cstdio>

namespace snip::bench {
namespace {

const char* Verdict(double value, double limit) {
  if (limit < 0) return "-";
  return value <= limit ? "reached" : "MISSED";
}

std::string LimitText(double limit, const std::string& unit) {
  char text[40]{};
  if (limit >= 0) std::snprintf(text, sizeof text, "%.4g %s", limit, unit.c_str());
  return text;
}

}  // namespace

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void PrintRatio(const std::string& work, const Comparison& comparison, double limit) {
  std::vector<double> ratios;
  for (std::size_t run = 0; run < comparison.measured.size(); ++run) {
    ratios.push_back(comparison.measured[run] / comparison.reference[run]);
  }
  const auto [lowest, highest] = std::minmax_element(ratios.begin(), ratios.end());
  std::printf("%s|%.3g ms|%.3g ms|%.2f x|%.2f..%.2f|%s|%s\n", work.c_str(), Median(comparison.measured),
              Median(comparison.reference), comparison.Ratio(), *lowest, *highest,
              LimitText(limit, "x").c_str(), Verdict(comparison.Ratio(), limit));
  std::fflush(stdout);
}

void PrintValue(const std::string& work, double value, double limit, const std::string& unit) {
  std::printf("%s|%.4g %s||||%s|%s\n", work.c_str(), value, unit.c_str(), LimitText(limit, unit).c_str(),
              Verdict(value, limit));
  std::fflush(stdout);
}

}  // namespace snip::bench
