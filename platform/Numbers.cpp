#include "platform/Numbers.h"

#include <cmath>
#include <cstdlib>
#include <string>

namespace snip {

std::optional<NumberAtStart> ReadNumber(std::string_view text) {
  std::size_t length = 0;
  const auto skipOneOf = [&](std::string_view characters) {
    if (length == text.size() || characters.find(text[length]) == std::string_view::npos) return false;
    ++length;
    return true;
  };
  const auto skipDigits = [&] {
    const std::size_t first = length;
    while (skipOneOf("0123456789")) {
    }
    return length - first;
  };
  skipOneOf("+-");
  std::size_t digits = skipDigits();
  if (skipOneOf(".")) digits += skipDigits();
  if (digits == 0) return std::nullopt;
  const std::size_t withoutExponent = length;
  if (skipOneOf("eE")) {
    skipOneOf("+-");
    if (skipDigits() == 0) length = withoutExponent;
  }
  const double value = std::atof(std::string(text.substr(0, length)).c_str());
  if (std::isinf(value)) return std::nullopt;
  return NumberAtStart{value, length};
}

}  // namespace snip
