#pragma once

#include <span>
#include <string_view>

namespace snip::test {

/// Something that reads what comes from outside, and what must hold for any input at all.
struct FuzzTarget {
  const char* name;  ///< Also the folder of its first inputs in "corpus".
  /// Throws std::logic_error when something does not hold.
  void (*run)(std::string_view input);
};

std::span<const FuzzTarget> FuzzTargets();

}  // namespace snip::test
