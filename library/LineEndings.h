#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace snip {

inline constexpr std::string_view kCrLf = "\r\n";

/// Calls `take` with each line of a text, without the CR LF between them.
template <class Take>
void ForEachLine(std::string_view text, const Take& take) {
  for (;;) {
    const std::size_t length = text.find(kCrLf);
    take(text.substr(0, length));
    if (length == std::string_view::npos) return;
    text.remove_prefix(length + kCrLf.size());
  }
}

/// A text with one kind of line ending.
struct ConvertedLines {
  std::string text;
  std::size_t changed = 0;  ///< Unusual line endings that were replaced.
};

/// Replaces every line ending, CR LF, LF or CR, by `lineEnding`, and counts those that are not `usual`, by
/// default the text's first.
ConvertedLines WithLineEndings(std::string_view text, std::string_view lineEnding,
                               std::optional<std::string_view> usual = std::nullopt);
inline ConvertedLines WithCrLf(std::string_view text) {
  return WithLineEndings(text, kCrLf);
}

}  // namespace snip
