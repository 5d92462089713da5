#include "cli/exchange/TextConversion.h"

#include <utf8cpp/utf8.h>

namespace snip {

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

ConvertedLines ToForeignText(std::string_view ansi, const CodePage& page) {
  ConvertedLines lines = WithLineEndings(ansi, "\n", "\r\n");
  lines.text = page.ToUtf8(lines.text);
  return lines;
}

std::string_view WithoutLastLineEnding(std::string_view text) {
  if (text.ends_with("\r\n")) return text.substr(0, text.size() - 2);
  if (text.ends_with('\n') || text.ends_with('\r')) return text.substr(0, text.size() - 1);
  return text;
}

}  // namespace snip
