#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace snip {

// Numbers as text with a point, whatever the user's locale writes: the program keeps the C locale that it
// starts with. (The charconv functions do the same, but their tables would be a quarter of the executable.)

/// The decimal text of a number, without an exponent, with as many decimals as a single needs.
std::string SingleText(float number);

/// A short text that reads back as the same number; with an exponent only for what is very large or small.
std::string DoubleText(double number);

struct NumberAtStart {
  double value = 0;
  std::size_t length = 0;  ///< How many characters of the text it takes.
};

/// The decimal number that a text begins with; none when it begins with anything else, a plus among it, or
/// with a number too large to be held.
std::optional<NumberAtStart> ReadNumber(std::string_view text);

}  // namespace snip
