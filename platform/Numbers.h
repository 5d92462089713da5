#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace snip {

struct NumberAtStart {
  double value = 0;
  std::size_t length = 0;  ///< How many characters of the text it takes, the sign among them.
};

/// The decimal number that a text begins with, with a point whatever the user's locale writes: the program
/// keeps the C locale that it starts with. None when the text begins with anything else, a blank among it, or
/// with a number too large to be held. (std::strtod and the charconv functions read the same, but mingw links
/// them with tables of 30 and 250 kilobytes; std::atof is Windows' own.)
std::optional<NumberAtStart> ReadNumber(std::string_view text);

}  // namespace snip
