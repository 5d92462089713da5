#include "cli/text/InputText.h"

#include <optional>

#include "cli/text/Utf8.h"

namespace snip {

AnsiText ReadInputText(std::string_view bytes, Encoding encoding, const CodePage& page) {
  if (encoding != Encoding::Ansi) {
    if (bytes.starts_with("\xEF\xBB\xBF")) return page.FromUtf8(bytes.substr(3));
    if (bytes.starts_with("\xFF\xFE")) return page.FromUtf16(bytes.substr(2), false);
    if (bytes.starts_with("\xFE\xFF")) return page.FromUtf16(bytes.substr(2), true);
  }
  if (encoding == Encoding::Utf16) return page.FromUtf16(bytes, false);
  if (encoding == Encoding::Utf8 || (encoding == Encoding::Auto && IsUtf8(bytes)))
    return page.FromUtf8(bytes);
  return {.text = std::string(bytes), .lost = 0};
}

CrLfText WithCrLf(std::string_view text) {
  CrLfText result;
  std::optional<std::string_view> usual;
  while (!text.empty()) {
    const auto end = text.find_first_of("\r\n");
    result.text.append(text.substr(0, end));
    if (end == std::string_view::npos) break;
    const std::string_view lineEnd = text.substr(end, text.substr(end).starts_with("\r\n") ? 2 : 1);
    result.text.append("\r\n");
    result.changed += usual.value_or(lineEnd) != lineEnd ? 1 : 0;
    usual = usual.value_or(lineEnd);
    text.remove_prefix(end + lineEnd.size());
  }
  return result;
}

std::string_view WithoutLastLineEnd(std::string_view text) {
  if (text.ends_with("\r\n")) return text.substr(0, text.size() - 2);
  if (text.ends_with('\n') || text.ends_with('\r')) return text.substr(0, text.size() - 1);
  return text;
}

}  // namespace snip
