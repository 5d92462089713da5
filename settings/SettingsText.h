#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace snip {

/// How settings are written as text. Stores of earlier versions read the same, so the encodings, odd as some
/// are, stay.

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

/// To a whole number, halves to the even neighbour; what is too large becomes the largest there is.
std::int32_t RoundHalfToEven(double number);

}  // namespace snip
