#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace snip {

// How settings are written as text. The encodings must stay, odd as some are, so that the settings of earlier
// versions can be read.

/// A switch: "-1" for on, "0" for off.
std::string FlagText(bool on);
/// Off only for exactly "0"; a missing value and any other text mean on.
bool FlagFromText(std::string_view text);

/// The decimal text of a number in single precision, with as many decimals as it needs and a point whatever
/// the user's locale writes. Numbers beyond 9e18, which no window or font reaches, become 9e18.
std::string NumberText(double number);

/// The number that a text begins with, after leading blanks; 0 when it begins with none, or with one that is
/// too large to be held.
double Val(std::string_view text);

/// Rounds to a whole number, halves to even. Numbers outside the range of the result become its nearest
/// limit, NaN becomes 0.
std::int32_t RoundHalfToEven(double number);

}  // namespace snip
