#include "ui/editor/RichEditText.h"

#include <algorithm>

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

}  // namespace

std::u16string RichEditCharacters(const std::string& text) {
  const int bytes = static_cast<int>(text.size());
  std::u16string wide(text.size(), u'\0');
  // On the platform both are UTF-16.
  const int size =
      MultiByteToWideChar(CP_ACP, 0, text.data(), bytes, reinterpret_cast<wchar_t*>(wide.data()), bytes);
  wide.resize(static_cast<std::size_t>(size));
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

std::string RichEditRange(HWND control, LONG begin, LONG end) {
  // Of a character the code page makes up to two bytes.
  std::string text(static_cast<std::size_t>(end - begin) * 2 + 1, '\0');
  TEXTRANGEA range{{begin, end}, text.data()};
  const LRESULT size = SendMessageA(control, EM_GETTEXTRANGE, 0, reinterpret_cast<LPARAM>(&range));
  text.resize(static_cast<std::size_t>(size));
  return text;
}

void StreamIn(HWND control, const std::string& bytes, WPARAM format) {
  Source source{bytes, 0};
  EDITSTREAM stream{};
  stream.dwCookie = reinterpret_cast<DWORD_PTR>(&source);
  stream.pfnCallback = &ReadSource;
  SendMessageA(control, EM_STREAMIN, format, reinterpret_cast<LPARAM>(&stream));
}

}  // namespace snip
