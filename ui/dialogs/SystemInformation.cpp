#include "ui/dialogs/SystemInformation.h"

#include <array>
#include <cstring>

#include "platform/Handle.h"
#include "version.h"

namespace snip {
namespace {

bool IsFile(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

/// The command line for a stored path, which may be quoted and have arguments. An unquoted path is quoted,
/// because the system would try its part before the first blank, which may be another program.
std::string CommandLine(const std::string& stored) {
  if (stored.starts_with('"')) return stored;
  for (auto end = stored.size(); end != std::string::npos && end > 0; end = stored.rfind(' ', end - 1)) {
    const std::string program = stored.substr(0, end);
    if (IsFile(program)) return '"' + program + '"' + stored.substr(end);
  }
  return '"' + stored + '"';
}

void StartProgram(const std::string& stored) {
  STARTUPINFOA start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESHOWWINDOW;
  start.wShowWindow = SW_SHOWNORMAL;
  std::string command = CommandLine(stored);
  PROCESS_INFORMATION process{};
  if (CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                     &process) == 0) {
    return;
  }
  const UniqueKernelObject thread(process.hThread);
  const UniqueKernelObject running(process.hProcess);
}

/// Replaces each %NAME% by the value of that environment variable.
std::string Expanded(const std::string& text) {
  std::string expanded(ExpandEnvironmentStringsA(text.c_str(), nullptr, 0) + 1, '\0');
  ExpandEnvironmentStringsA(text.c_str(), expanded.data(), static_cast<DWORD>(expanded.size()));
  expanded.resize(std::strlen(expanded.c_str()));
  return expanded;
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
  DWORD type = REG_NONE;
  if (RegQueryValueExA(key.get(), valueName.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()),
                       &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  std::string text(buffer.data(), size);
  // A value may be stored with or without the zero byte at its end.
  if (text.ends_with('\0')) text.pop_back();
  return type == REG_EXPAND_SZ ? Expanded(text) : text;
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
    if (IsFile(path)) {
      StartProgram(path);
      return;
    }
  }
  showMessage("System Information Is Unavailable At This Time", MessageStyle::kOk, SNIPSTORE_NAME);
}

}  // namespace snip
