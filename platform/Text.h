#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace snip {

/// Only the blank (code 32) counts as a space here, as in the files and registry values that exist: a tab is
/// text.
inline std::string_view TrimRight(std::string_view text) {
  const auto last = text.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

inline std::string_view TrimLeft(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

inline std::string_view Trim(std::string_view text) {
  return TrimLeft(TrimRight(text));
}

/// Equality without regard to the case of the letters A to Z; for the program's own fixed words.
inline bool EqualsIgnoringAsciiCase(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace snip
