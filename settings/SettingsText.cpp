#include "settings/SettingsText.h"

#include <cmath>
#include <limits>

#include "platform/Numbers.h"
#include "platform/Text.h"

namespace snip {

std::string FlagText(bool on) {
  return on ? "-1" : "0";
}

bool FlagFromText(std::string_view text) {
  return text != "0";
}

std::string NumberText(double number) {
  return SingleText(static_cast<float>(number));
}

double Val(std::string_view text) {
  text = TrimLeft(text);
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return 0;
  }
  const auto number = ReadNumber(text);
  return number ? number->value : 0;
}

std::int32_t RoundHalfToEven(double number) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(number)) return 0;
  if (number <= Limits::min()) return Limits::min();
  if (number >= Limits::max()) return Limits::max();
  return static_cast<std::int32_t>(std::nearbyint(number));  // the rounding that a process starts with
}

}  // namespace snip
