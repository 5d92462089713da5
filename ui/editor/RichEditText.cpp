#include "ui/editor/RichEditText.h"

#include <algorithm>

#include "platform/Win32Text.h"

namespace snip {
namespace {

struct Source {
  const std::string& bytes;
  std::size_t place;
};

DWORD CALLBACK ReadSource(DWORD_PTR cookie, LPBYTE buffer, LONG room, LONG* read) {
  auto& source = *reinterpret_cast<Source*>(cookie);
  const std::size_t size = std::min(static_cast<std::size_t>(room), source.bytes.size() - source.place);
  std::copy_n(source.bytes.data() + source.place, size, buffer);
  source.place += size;
  *read = static_cast<LONG>(size);
  return 0;
}

constexpr UINT kUtf16 = 1200;

std::optional<std::size_t> Length(HWND control) {
  GETTEXTLENGTHEX asked{GTL_NUMCHARS | GTL_PRECISE, kUtf16};
  const auto length =
      static_cast<LONG>(SendMessageA(control, EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&asked), 0));
  if (length < 0 || IsWindow(control) == 0) return std::nullopt;
  return static_cast<std::size_t>(length);
}

/// Of at most `most` characters; nothing when the control gives more than it was asked for.
std::optional<std::u16string> Read(HWND control, std::size_t most, DWORD flags) {
  std::u16string text(most + 1, u'\0');
  GETTEXTEX asked{static_cast<DWORD>(text.size() * sizeof(char16_t)), flags, kUtf16, nullptr, nullptr};
  const LRESULT size = SendMessageA(control, EM_GETTEXTEX, reinterpret_cast<WPARAM>(&asked),
                                    reinterpret_cast<LPARAM>(text.data()));
  if (size < 0 || static_cast<std::size_t>(size) > most) return std::nullopt;
  text.resize(static_cast<std::size_t>(size));
  return text;
}

}  // namespace

std::u16string RichEditCharacters(const std::string& text) {
  std::u16string wide = Utf16FromAnsi(text);
  const auto end = std::unique(wide.begin(), wide.end(),
                               [](char16_t before, char16_t c) { return before == u'\r' && c == u'\n'; });
  wide.erase(end, wide.end());
  return wide;
}

std::string RichEditColumns(std::u16string_view characters) {
  std::string columns(characters.size(), '\0');
  std::transform(characters.begin(), characters.end(), columns.begin(),
                 [](char16_t c) { return c < 0x80 ? static_cast<char>(c) : '\x80'; });
  return columns;
}

std::optional<std::u16string> RichEditText(HWND control) {
  const std::optional<std::size_t> length = Length(control);
  if (!length) return std::nullopt;
  std::optional<std::u16string> text = Read(control, *length, GT_DEFAULT);
  if (text && text->size() != *length) return std::nullopt;
  return text;
}

std::optional<std::u16string> SelectedRichEditText(HWND control) {
  const std::optional<std::size_t> length = Length(control);
  return length ? Read(control, *length, GT_SELECTION) : std::nullopt;
}

std::string AnsiFromRichEdit(std::u16string_view characters) {
  std::string lines;
  std::string ansi = AnsiFromUtf16(characters);
  lines.reserve(ansi.size() + static_cast<std::size_t>(std::count(ansi.begin(), ansi.end(), '\r')));
  for (const char c : ansi) {
    lines += c;
    if (c == '\r') lines += '\n';
  }
  return lines;
}

void StreamIn(HWND control, const std::string& bytes, WPARAM format) {
  Source source{bytes, 0};
  EDITSTREAM stream{};
  stream.dwCookie = reinterpret_cast<DWORD_PTR>(&source);
  stream.pfnCallback = &ReadSource;
  SendMessageA(control, EM_STREAMIN, format, reinterpret_cast<LPARAM>(&stream));
}

}  // namespace snip
