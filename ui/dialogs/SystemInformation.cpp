#include "ui/dialogs/SystemInformation.h"

#include <array>

#include "platform/Handle.h"
#include "version.h"

namespace snip {
namespace {

void StartProgram(const std::string& path) {
  STARTUPINFOA start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = SW_SHOWNORMAL;
  // Quoted, so that a path with blanks cannot be taken for another program and its arguments.
  std::string command = '"' + path + '"';
  PROCESS_INFORMATION process{};
  if (CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                     &process) == 0) {
    return;
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
}

}  // namespace

std::optional<std::string> GetKeyValue(HKEY root, const std::string& keyName, const std::string& valueName) {
  constexpr REGSAM access = KEY_READ | KEY_WRITE | KEY_CREATE_LINK;
  static_assert(access == 0x2003F);
  HKEY opened = nullptr;
  if (RegOpenKeyExA(root, keyName.c_str(), 0, access, &opened) != ERROR_SUCCESS) return std::nullopt;
  const UniqueRegKey key(opened);

  std::array<char, 1024> buffer{};
  DWORD size = buffer.size();
  if (RegQueryValueExA(key.get(), valueName.c_str(), nullptr, nullptr, reinterpret_cast<BYTE*>(buffer.data()),
                       &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  std::string text(buffer.data(), size);
  // A value may be stored with or without the zero byte at its end.
  if (text.ends_with('\0')) text.pop_back();
  return text;
}

void StartSysInfo(const ShowMessageFunction& showMessage) {
  if (const auto path =
          GetKeyValue(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", "PATH")) {
    StartProgram(*path);
    return;
  }
  if (const auto folder =
          GetKeyValue(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Shared Tools Location", "MSINFO")) {
    const std::string path = *folder + "\\MSINFO32.EXE";
    if (GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES) {
      StartProgram(path);
      return;
    }
  }
  showMessage("System Information Is Unavailable At This Time", MessageStyle::kOk, SNIPSTORE_NAME);
}

}  // namespace snip
