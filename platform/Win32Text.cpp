#include "platform/Win32Text.h"

#include <algorithm>
#include <cstdlib>

#include "platform/Com.h"

namespace snip {
namespace {

template <class Text, class Function>
Text ModulePath(Function* fileName) {
  Text path(MAX_PATH, '\0');
  for (;;) {
    const DWORD length = fileName(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

std::string EntryText(HWND control, UINT lengthMessage, UINT textMessage, int entry) {
  const LRESULT length = SendMessageA(control, lengthMessage, static_cast<WPARAM>(entry), 0);
  if (length < 0) return {};
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  const LRESULT size =
      SendMessageA(control, textMessage, static_cast<WPARAM>(entry), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(std::clamp<LRESULT>(size, 0, length)));  // it may have told too much
  return text;
}

std::u16string Utf16From(UINT codePage, std::string_view text) {
  const int bytes = static_cast<int>(text.size());
  std::u16string wide(text.size(), u'\0');
  // On the platform both are UTF-16.
  const int size =
      MultiByteToWideChar(codePage, 0, text.data(), bytes, reinterpret_cast<wchar_t*>(wide.data()), bytes);
  wide.resize(static_cast<std::size_t>(size));
  return wide;
}

std::string FromUtf16(UINT codePage, const std::u16string& text) {
  const auto* wide = reinterpret_cast<const wchar_t*>(text.c_str());
  const int units = static_cast<int>(text.size());
  std::string bytes(text.size() * 3, '\0');  // the most that a code page needs
  const int size = WideCharToMultiByte(codePage, 0, wide, units, bytes.data(), static_cast<int>(bytes.size()),
                                       nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

}  // namespace

std::optional<std::string> FieldText(HWND control) {
  CPINFO codePage{};
  GetCPInfo(CP_ACP, &codePage);
  const auto told = static_cast<std::size_t>(SendMessageA(control, WM_GETTEXTLENGTH, 0, 0));
  // Some controls tell the length in characters, and give a buffer that is too short a part or nothing.
  for (std::size_t room = told * std::max(codePage.MaxCharSize, 1U) + 2; IsWindow(control) != 0; room *= 2) {
    std::string text(room, '\0');
    const auto size = static_cast<std::size_t>(
        SendMessageA(control, WM_GETTEXT, room, reinterpret_cast<LPARAM>(text.data())));
    if (size == 0 && told > 0) return std::nullopt;
    if (size + 1 >= room) continue;
    text.resize(size);
    return text;
  }
  return std::nullopt;
}

std::string WindowText(HWND window) {
  return FieldText(window).value_or(std::string());
}

std::string ListBoxText(HWND list, int entry) {
  return EntryText(list, LB_GETTEXTLEN, LB_GETTEXT, entry);
}

std::string ComboBoxText(HWND combo, int entry) {
  return EntryText(combo, CB_GETLBTEXTLEN, CB_GETLBTEXT, entry);
}

std::u16string Utf16FromAnsi(std::string_view text) {
  return Utf16From(CP_ACP, text);
}

std::string Utf8FromAnsi(const std::string& text) {
  return FromUtf16(CP_UTF8, Utf16FromAnsi(text));
}

std::string AnsiFromUtf8(const std::string& text) {
  return FromUtf16(CP_ACP, Utf16From(CP_UTF8, text));
}

std::string AnsiFromUtf16(std::u16string_view text) {
  return FromUtf16(CP_ACP, std::u16string(text));
}

bool SameTextIgnoringCase(const std::string& a, const std::string& b) {
  return CompareStringA(LOCALE_USER_DEFAULT, NORM_IGNORECASE | LOCALE_USE_CP_ACP, a.data(),
                        static_cast<int>(a.size()), b.data(), static_cast<int>(b.size())) == CSTR_EQUAL;
}

std::optional<float> SingleFromText(const std::string& text) {
  float number = 0;
  if (FAILED(VarR4FromStr(Bstr(text).get(), LOCALE_USER_DEFAULT, 0, &number))) return std::nullopt;
  return number;
}

std::string ProgramPath() {
  return ModulePath<std::string>(&GetModuleFileNameA);
}

std::wstring WideProgramPath() {
  return ModulePath<std::wstring>(&GetModuleFileNameW);
}

std::string ProgramDirectory() {
  std::string path = ProgramPath();
  const auto slash = path.find_last_of('\\');
  if (slash == std::string::npos) return path;
  const bool root = slash > 0 && path[slash - 1] == ':';
  return path.substr(0, root ? slash + 1 : slash);
}

std::vector<std::string> CommandLineArguments() {
  return {__argv + std::min(__argc, 1), __argv + __argc};
}

}  // namespace snip
