#include "library/LibraryFolder.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "platform/Handle.h"
#include "platform/Text.h"

namespace snip {
namespace {

constexpr std::string_view kExtension = ".bns";

/// Short names match the pattern as well on some file systems ("notes.bnsold" as NOTES~1.BNS), so the ending
/// is looked at again; a directory is no library.
bool IsLibrary(const WIN32_FIND_DATAA& entry) {
  if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
  const std::string_view name = entry.cFileName;
  return name.size() >= kExtension.size() &&
         EqualsIgnoringAsciiCase(name.substr(name.size() - kExtension.size()), kExtension);
}

/// Files are read and written in pieces: one call takes at most a DWORD of bytes.
constexpr std::size_t kPiece = std::size_t{1} << 24U;

}  // namespace

LibraryFolder::LibraryFolder(std::string directory) : prefix_(std::move(directory)) {
  if (!prefix_.ends_with('\\')) prefix_ += '\\';
}

std::vector<std::string> LibraryFolder::Names() const {
  std::vector<std::string> names;
  WIN32_FIND_DATAA entry{};
  const UniqueFind search(FindFirstFileA((prefix_ + "*.bns").c_str(), &entry));
  if (!search) return names;
  do {
    if (!IsLibrary(entry)) continue;
    const std::string_view file = entry.cFileName;
    names.emplace_back(file.substr(0, file.size() - kExtension.size()));
  } while (FindNextFileA(search.get(), &entry) != 0);
  return names;
}

std::string LibraryFolder::PathOf(const std::string& name) const {
  return prefix_ + name + std::string(kExtension);
}

std::optional<std::string> LibraryFolder::Read(const std::string& path) const {
  const UniqueFile file(CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file) return std::nullopt;
  LARGE_INTEGER size{};
  if (GetFileSizeEx(file.get(), &size) == 0) return std::nullopt;

  std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    DWORD got = 0;
    const auto wanted = static_cast<DWORD>(std::min(kPiece, bytes.size() - filled));
    if (ReadFile(file.get(), bytes.data() + filled, wanted, &got, nullptr) == 0) return std::nullopt;
    if (got == 0) break;  // the file has become shorter meanwhile
    filled += got;
  }
  bytes.resize(filled);
  return bytes;
}

bool LibraryFolder::Replace(const std::string& path, const std::string& bytes) {
  DeleteFileA(path.c_str());
  const UniqueFile file(CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return false;
  for (std::size_t done = 0; done < bytes.size();) {
    DWORD written = 0;
    const auto wanted = static_cast<DWORD>(std::min(kPiece, bytes.size() - done));
    if (WriteFile(file.get(), bytes.data() + done, wanted, &written, nullptr) == 0 || written == 0)
      return false;
    done += written;
  }
  return true;
}

}  // namespace snip
