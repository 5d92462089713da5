#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace snip::bench {

/// Milliseconds since some moment.
inline double Now() {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

template <class Work>
double Milliseconds(Work&& work) {
  const double start = Now();
  work();
  return Now() - start;
}

double Median(std::vector<double> values);

/// The same work done by the program and by what it is measured against, in turns, so that whatever else the
/// machine does meanwhile slows both. Both vectors hold one value for each run.
struct Comparison {
  std::vector<double> measured;
  std::vector<double> reference;

  double Ratio() const { return Median(measured) / Median(reference); }
};

/// Each function does its work once and returns its milliseconds. One run more than asked for comes first and
/// does not count: it warms up caches. Who goes first changes with every run.
template <class Measured, class Reference>
Comparison Compare(int runs, Measured&& measured, Reference&& reference) {
  Comparison comparison;
  for (int run = -1; run < runs; ++run) {
    const bool referenceFirst = run % 2 == 0;
    const double before = referenceFirst ? reference() : 0;
    const double work = measured();
    const double after = referenceFirst ? before : reference();
    if (run < 0) continue;
    comparison.measured.push_back(work);
    comparison.reference.push_back(after);
  }
  return comparison;
}

/// The most that a row may show, and why no more than that.
struct Limit {
  double most = 0;
  const char* reason = "";
};

// Each prints one line of the report, for ./bench to lay out. A row without a limit explains one that has
// one.
void PrintRatio(const std::string& work, const Comparison& comparison, const std::optional<Limit>& limit);
void PrintValue(const std::string& work, double value, const std::optional<Limit>& limit,
                const std::string& unit);

}  // namespace snip::bench
