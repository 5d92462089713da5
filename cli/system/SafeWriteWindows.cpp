#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <utility>

#include "cli/system/Failure.h"
#include "cli/system/Files.h"
#include "cli/system/SafeWrite.h"
#include "platform/Handle.h"

namespace snip {
namespace {

[[noreturn]] void ThrowLastError(const std::string& path) {
  const DWORD error = GetLastError();
  if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS) {
    throw Failure(ExitCode::Refused, path + ": already exists");
  }
  throw Failure(ExitCode::File, path + ": cannot be written (error " + std::to_string(error) + ")");
}

/// A new file in the folder of another; deleted unless it is released.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path& beside) {
    const std::wstring folder = beside.has_parent_path() ? beside.parent_path().wstring() : L".";
    wchar_t name[MAX_PATH] = {};
    if (GetTempFileNameW(folder.c_str(), L"bns", 0, name) != 0) path_ = name;
  }
  ~TemporaryFile() {
    if (!path_.empty()) DeleteFileW(path_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::wstring& path() const { return path_; }
  void Release() { path_.clear(); }

 private:
  std::wstring path_;
};

bool WriteAll(const std::wstring& path, std::string_view bytes) {
  const UniqueFile file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, TRUNCATE_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return false;
  while (!bytes.empty()) {
    constexpr std::size_t piece = std::size_t{1} << 24U;
    DWORD written = 0;
    const auto wanted = static_cast<DWORD>(std::min(piece, bytes.size()));
    if (WriteFile(file.get(), bytes.data(), wanted, &written, nullptr) == 0) return false;
    bytes.remove_prefix(written);
  }
  return FlushFileBuffers(file.get()) != 0;
}

using FinalPathFunction = DWORD WINAPI(HANDLE file, LPWSTR path, DWORD size, DWORD flags);

/// The file that a symbolic link refers to; the path itself if the file does not exist, or on systems that
/// have no such links.
std::filesystem::path Followed(const std::filesystem::path& path) {
  const UniqueFile file(CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  auto* const finalPath = reinterpret_cast<FinalPathFunction*>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "GetFinalPathNameByHandleW")));
  if (!file || finalPath == nullptr) return path;
  constexpr DWORD kNormalized = 0;  // FILE_NAME_NORMALIZED, which the headers define only for later systems
  const DWORD size = finalPath(file.get(), nullptr, 0, kNormalized);
  std::wstring followed(size, L'\0');
  const DWORD length = size == 0 ? 0 : finalPath(file.get(), followed.data(), size, kNormalized);
  if (length == 0 || length >= size) return path;
  followed.resize(length);
  return followed;
}

}  // namespace

void WriteFileSafely(const std::string& path, std::string_view bytes, Existing existing) {
  const std::filesystem::path named = ToPath(path);
  const bool exists = GetFileAttributesW(named.c_str()) != INVALID_FILE_ATTRIBUTES;
  if (exists && existing == Existing::Keep) throw Failure(ExitCode::Refused, path + ": already exists");
  const std::filesystem::path target = exists ? Followed(named) : named;
  TemporaryFile temporary(target);
  if (temporary.path().empty() || !WriteAll(temporary.path(), bytes)) ThrowLastError(path);
  // ReplaceFile keeps the old file's attributes and access rights; MoveFileEx fails if the name is taken.
  const BOOL placed = exists ? ReplaceFileW(target.c_str(), temporary.path().c_str(), nullptr,
                                            REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr)
                             : MoveFileExW(temporary.path().c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH);
  if (placed == 0) ThrowLastError(path);
  temporary.Release();
}

}  // namespace snip
