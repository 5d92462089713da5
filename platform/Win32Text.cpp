#include "platform/Win32Text.h"

#include <algorithm>
#include <cstdlib>

#include "platform/Com.h"

namespace snip {

std::string WindowText(HWND window) {
  std::string text(static_cast<std::size_t>(SendMessageA(window, WM_GETTEXTLENGTH, 0, 0)) + 1, '\0');
  const LRESULT length = SendMessageA(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return text;
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
  std::string path(MAX_PATH, '\0');
  for (;;) {
    const DWORD length = GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
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
