#include "platform/PatientFile.h"

#include <utility>

namespace snip {

std::wstring LongPath(std::wstring path) {
  const bool onDrive =
      path.size() > 2 && path[1] == L':' && path[2] == L'\\' && path.find(L'/') == std::wstring::npos;
  return onDrive ? L"\\\\?\\" + std::move(path) : std::move(path);
}

FileStamp StampOf(const WIN32_FIND_DATAW& found) {
  return {true, (std::uint64_t{found.nFileSizeHigh} << 32U) | found.nFileSizeLow,
          TicksOf(found.ftLastWriteTime)};
}

std::int64_t TicksOf(const FILETIME& time) {
  constexpr std::int64_t from1601To1970 = 116444736000000000;
  return ((std::int64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime) - from1601To1970;
}

std::optional<FileStamp> StampOfFile(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == 0) {
    const DWORD error = GetLastError();
    const bool missing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
    return missing ? std::optional(FileStamp{}) : std::nullopt;
  }
  if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return std::nullopt;
  return FileStamp{true, (std::uint64_t{data.nFileSizeHigh} << 32U) | data.nFileSizeLow,
                   TicksOf(data.ftLastWriteTime)};
}

UniqueFile OpenPatiently(Patience& patience, const std::wstring& path, DWORD access, DWORD share,
                         DWORD disposition) {
  UniqueFile file;
  Patiently(patience, [&] {
    file.Reset(
        CreateFileW(path.c_str(), access, share, nullptr, disposition, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    return static_cast<bool>(file);
  });
  return file;
}

}  // namespace snip
