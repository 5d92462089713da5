#include "library/LibraryFolder.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "library/Library.h"
#include "platform/Handle.h"
#include "platform/PatientFile.h"
#include "platform/Text.h"
#include "platform/Win32Text.h"

namespace snip {
namespace {

/// Whether a directory entry is a library. Checks the extension again, because on some file systems the
/// pattern also matches short names ("notes.bnsold" as NOTES~1.BNS).
bool IsLibrary(const WIN32_FIND_DATAA& entry) {
  if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
  const std::string_view name = entry.cFileName;
  return name.size() > kLibraryExtension.size() && HasLibraryExtension(name);
}

std::wstring SystemPath(const std::string& path) {
  const std::u16string utf16 = Utf16FromAnsi(path);
  return LongPath(std::wstring(utf16.begin(), utf16.end()));
}

/// The bytes of an open file.
class FileBytes : public ByteSource {
 public:
  explicit FileBytes(UniqueFile file) : file_(std::move(file)) {}

  std::size_t Read(std::span<char> room) override {
    DWORD got = 0;
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(room.size(), MAXLONG));
    if (ReadFile(file_.get(), room.data(), wanted, &got, nullptr) == 0) failed_ = true;
    return failed_ ? 0 : got;
  }
  bool Failed() const override { return failed_; }

 private:
  UniqueFile file_;
  bool failed_ = false;
};

/// Whether Windows takes the name for a device, whatever its extension: most programs could not open or
/// delete such a file.
bool IsDeviceName(std::string_view name) {
  name = TrimRight(name.substr(0, name.find('.')));
  const auto is = [&](std::string_view device) { return EqualsIgnoringAsciiCase(name, device); };
  const bool numbered = name.size() == 4 && name[3] >= '0' && name[3] <= '9' &&
                        (EqualsIgnoringAsciiCase(name.substr(0, 3), "COM") ||
                         EqualsIgnoringAsciiCase(name.substr(0, 3), "LPT"));
  return numbered || is("CON") || is("PRN") || is("AUX") || is("NUL");
}

}  // namespace

LibraryFolder::LibraryFolder(std::string directory, std::shared_ptr<Patience> patience)
    : prefix_(std::move(directory)), patience_(std::move(patience)) {
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
    names.emplace_back(file.substr(0, file.size() - kLibraryExtension.size()));
  } while (FindNextFileA(search.get(), &entry) != 0);
  return names;
}

std::string LibraryFolder::PathOf(const std::string& name) const {
  return prefix_ + name + std::string(kLibraryExtension);
}

bool LibraryFolder::IsInFolder(const std::string& path) const {
  if (!path.starts_with(prefix_)) return false;
  const std::string_view name = std::string_view(path).substr(prefix_.size());
  // A colon would write into a stream of another file.
  return name.find_first_of(std::string_view("\\/:\0", 4)) == std::string_view::npos && !IsDeviceName(name);
}

bool LibraryFolder::Exists(const std::string& path) const {
  return GetFileAttributesW(SystemPath(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::optional<FileStamp> LibraryFolder::Stamp(const std::string& path) const {
  return StampOfFile(SystemPath(path));
}

std::unique_ptr<ByteSource> LibraryFolder::Open(const std::string& path) const {
  UniqueFile file = OpenPatiently(*patience_, SystemPath(path), GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
  LARGE_INTEGER size{};
  if (!file || GetFileSizeEx(file.get(), &size) == 0 || size.QuadPart > kLargestFile) return nullptr;
  return std::make_unique<FileBytes>(std::move(file));
}

bool LibraryFolder::Replace(const std::string& path, ByteSource&& bytes) {
  if (!IsInFolder(path)) return false;
  const std::unique_ptr<char[]> piece(new char[ByteSource::kWrittenPiece]);
  const std::wstring longPath = SystemPath(path);
  DeleteFileW(longPath.c_str());
  const UniqueFile file = OpenPatiently(*patience_, longPath, GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS);
  if (!file) return false;
  while (const auto size = static_cast<DWORD>(bytes.Read({piece.get(), ByteSource::kWrittenPiece}))) {
    DWORD written = 0;
    if (WriteFile(file.get(), piece.get(), size, &written, nullptr) == 0 || written != size) return false;
  }
  return FlushFileBuffers(file.get()) != 0 && !bytes.Failed();
}

bool LibraryFolder::Rename(const std::string& path, const std::string& newPath) {
  if (!IsInFolder(newPath)) return false;
  return MoveFileW(SystemPath(path).c_str(), SystemPath(newPath).c_str()) != 0;
}

}  // namespace snip
