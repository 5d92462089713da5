#include "platform/Numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace snip {
namespace {

std::string Fixed(double number, int decimals) {
  std::array<char, 512> text{};  // the smallest single has 149 decimals, the largest double 309 digits
  return {text.data(),
          static_cast<std::size_t>(std::snprintf(text.data(), text.size(), "%.*f", decimals, number))};
}

std::string WithExponent(double number, int digits) {
  std::array<char, 32> text{};
  return {text.data(),
          static_cast<std::size_t>(std::snprintf(text.data(), text.size(), "%.*g", digits, number))};
}

}  // namespace

std::string SingleText(float number) {
  constexpr int mostDecimals = 149;
  std::string text;
  for (int decimals = 0; decimals <= mostDecimals; ++decimals) {
    text = Fixed(number, decimals);
    if (std::strtof(text.c_str(), nullptr) == number) break;
  }
  return text;
}

std::string DoubleText(double number) {
  constexpr int digits = 17;  // so many tell every double from every other
  constexpr double exactUpTo = 1e15;
  for (int decimals = 0; decimals <= digits && std::fabs(number) < exactUpTo; ++decimals) {
    std::string text = Fixed(number, decimals);
    if (std::strtod(text.c_str(), nullptr) == number) return text;
  }
  return WithExponent(number, digits);
}

std::optional<NumberAtStart> ReadNumber(std::string_view text) {
  // Neither blanks, a plus, "inf" nor the hexadecimal numbers that C reads as well.
  const bool negative = text.starts_with('-');
  const std::size_t first = negative ? 1 : 0;
  if (first == text.size() || std::string_view("0123456789.").find(text[first]) == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string digits(text.substr(0, std::min(text.find_first_not_of("0123456789.eE+-"), text.size())));
  char* end = nullptr;
  const double value = std::strtod(digits.c_str(), &end);
  if (end == digits.c_str() || std::isinf(value)) return std::nullopt;
  return NumberAtStart{value, static_cast<std::size_t>(end - digits.c_str())};
}

}  // namespace snip
