#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace snip {

/// A text with one kind of line end.
struct ConvertedLines {
  std::string text;
  std::size_t changed = 0;  ///< Unusual line ends that were replaced.
};

/// Replaces every line end, CR LF, LF or CR, by `lineEnd`, and counts those that are not `usual`, by default
/// the text's first.
ConvertedLines WithLineEnds(std::string_view text, std::string_view lineEnd,
                            std::optional<std::string_view> usual = std::nullopt);
inline ConvertedLines WithCrLf(std::string_view text) {
  return WithLineEnds(text, "\r\n");
}

}  // namespace snip
