#include "settings/SettingsText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace snip {

std::string FlagText(bool on) {
  return on ? "-1" : "0";
}

bool FlagFromText(std::string_view text) {
  return text != "0";
}

std::string NumberText(double number) {
  std::array<char, 192> text{};  // the smallest single has 149 decimals
  const auto result = std::to_chars(text.data(), text.data() + text.size(), static_cast<float>(number),
                                    std::chars_format::fixed);
  return {text.data(), result.ptr};
}

double Val(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // What is not begun by a digit or a point, "inf" among it, is no number here.
  if (text.empty() || std::string_view("0123456789.").find(text.front()) == std::string_view::npos) return 0;
  double number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc()) return 0;
  return negative ? -number : number;
}

std::int32_t RoundHalfToEven(double number) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(number)) return 0;
  if (number <= Limits::min()) return Limits::min();
  if (number >= Limits::max()) return Limits::max();
  return static_cast<std::int32_t>(std::nearbyint(number));  // the rounding that a process starts with
}

}  // namespace snip
