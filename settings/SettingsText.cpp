#include "settings/SettingsText.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/Numbers.h"
#include "platform/Text.h"

namespace snip {
namespace {

constexpr double kLargestNumber = 9e18;  // larger numbers do not fit into 64 bits

}  // namespace

std::string FlagText(bool on) {
  return on ? "-1" : "0";
}

bool FlagFromText(std::string_view text) {
  return text != "0";
}

std::string NumberText(double number) {
  if (std::isnan(number)) return "0";
  const auto single = static_cast<float>(std::clamp(number, -kLargestNumber, kLargestNumber));
  const double size = std::fabs(single);
  double scale = 1;
  std::size_t decimals = 0;
  while (static_cast<float>(std::nearbyint(size * scale) / scale) != static_cast<float>(size)) {
    scale *= 10;
    ++decimals;
  }
  std::string text = std::to_string(static_cast<std::int64_t>(std::nearbyint(size * scale)));
  if (decimals > 0) {
    if (text.size() <= decimals) text.insert(0, decimals + 1 - text.size(), '0');
    text.insert(text.size() - decimals, 1, '.');
  }
  return single < 0 ? "-" + text : text;
}

double Val(std::string_view text) {
  const auto number = ReadNumber(TrimLeft(text));
  return number ? number->value : 0;
}

std::int32_t RoundHalfToEven(double number) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(number)) return 0;
  if (number <= Limits::min()) return Limits::min();
  if (number >= Limits::max()) return Limits::max();
  return static_cast<std::int32_t>(std::nearbyint(number));  // the rounding mode that a process starts with
}

}  // namespace snip
