#include "cli/exchange/TextConversion.h"

#include <utf8cpp/utf8.h>

#include <optional>

namespace snip {
namespace {

/// Replaces every line end by `lineEnd`, and counts those that are not `usual`, by default the first.
ConvertedLines WithLineEnds(std::string_view text, std::string_view lineEnd,
                            std::optional<std::string_view> usual) {
  ConvertedLines result;
  while (!text.empty()) {
    const auto end = text.find_first_of("\r\n");
    result.text.append(text.substr(0, end));
    if (end == std::string_view::npos) break;
    const std::string_view found = text.substr(end, text.substr(end).starts_with("\r\n") ? 2 : 1);
    usual = usual.value_or(found);
    result.text.append(lineEnd);
    result.changed += found != usual ? 1 : 0;
    text.remove_prefix(end + found.size());
  }
  return result;
}

}  // namespace

AnsiText ReadInputText(std::string_view bytes, Encoding encoding, const CodePage& page) {
  if (encoding != Encoding::Ansi) {
    if (bytes.starts_with("\xEF\xBB\xBF")) return page.FromUtf8(bytes.substr(3));
    if (bytes.starts_with("\xFF\xFE")) return page.FromUtf16(bytes.substr(2), false);
    if (bytes.starts_with("\xFE\xFF")) return page.FromUtf16(bytes.substr(2), true);
  }
  if (encoding == Encoding::Utf16) return page.FromUtf16(bytes, false);
  if (encoding == Encoding::Utf8 || (encoding == Encoding::Auto && utf8::is_valid(bytes)))
    return page.FromUtf8(bytes);
  return {.text = std::string(bytes), .lost = 0};
}

ConvertedLines WithCrLf(std::string_view text) {
  return WithLineEnds(text, "\r\n", std::nullopt);
}

ConvertedLines ToForeignText(std::string_view ansi, const CodePage& page) {
  ConvertedLines lines = WithLineEnds(ansi, "\n", "\r\n");
  lines.text = page.ToUtf8(lines.text);
  return lines;
}

std::string_view WithoutLastLineEnd(std::string_view text) {
  if (text.ends_with("\r\n")) return text.substr(0, text.size() - 2);
  if (text.ends_with('\n') || text.ends_with('\r')) return text.substr(0, text.size() - 1);
  return text;
}

}  // namespace snip
