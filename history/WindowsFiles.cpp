#include <windows.h>
#include <shlobj.h>

#include <algorithm>
#include <utility>

#include "history/ContentHash.h"
#include "history/SystemFiles.h"
#include "platform/PatientFile.h"

namespace snip {
namespace {

constexpr DWORD kPiece = DWORD{1} << 18U;
constexpr DWORD kShareAsReader = FILE_SHARE_READ | FILE_SHARE_DELETE;

std::wstring Wide(const std::string& utf8) {
  std::wstring wide(utf8.size(), L'\0');
  const int size = static_cast<int>(utf8.size());
  wide.resize(
      static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), size)));
  std::ranges::replace(wide, L'/', L'\\');
  return wide;
}

std::wstring SystemPath(const std::string& utf8) {
  return LongPath(Wide(utf8));
}

std::string Utf8(const std::wstring& wide) {
  const int size = static_cast<int>(wide.size());
  std::string utf8(wide.size() * 3, '\0');
  utf8.resize(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(),
                                                           static_cast<int>(utf8.size()), nullptr, nullptr)));
  return utf8;
}

/// A mutex named after a path. The thread that owns it has to release it.
class NamedMutex : public Held {
 public:
  NamedMutex(const char* purpose, const std::string& identity)
      : mutex_(CreateMutexA(nullptr, FALSE,
                            ("BnSnipstore-" + std::string(purpose) + HexDigits(ContentHash(identity) >> 32U) +
                             HexDigits(ContentHash(identity)))
                                .c_str())),
        existed_(GetLastError() == ERROR_ALREADY_EXISTS) {}
  ~NamedMutex() override {
    if (owned_) ReleaseMutex(mutex_.get());
  }

  bool existed() const { return !mutex_ || existed_; }
  bool Own(Patience& patience) {
    if (!mutex_) return true;
    DWORD result = WaitForSingleObject(mutex_.get(), 0);
    for (int attempt = 0; result == WAIT_TIMEOUT && attempt < kLockAttempts; ++attempt) {
      const Patience::Duration wait = patience.Take(kLockPause);
      if (wait == Patience::Duration::zero()) break;
      result = WaitForSingleObject(mutex_.get(), static_cast<DWORD>(wait.count()));
    }
    return owned_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
  }

 private:
  UniqueKernelObject mutex_;
  bool existed_;
  bool owned_ = false;
};

}  // namespace

std::optional<FileStamp> SystemFiles::Stamp(const std::string& path) {
  return StampOfFile(SystemPath(path));
}

std::optional<std::string> SystemFiles::Read(const std::string& path) {
  const UniqueFile file =
      OpenPatiently(patience(), SystemPath(path), GENERIC_READ, kShareAsReader, OPEN_EXISTING);
  LARGE_INTEGER size{};
  if (!file || GetFileSizeEx(file.get(), &size) == 0 || size.QuadPart > kLargestFile) return std::nullopt;
  std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
  DWORD got = 0;
  const auto wanted = static_cast<DWORD>(bytes.size());
  if (wanted > 0 && (ReadFile(file.get(), bytes.data(), wanted, &got, nullptr) == 0 || got != wanted))
    return std::nullopt;
  return bytes;
}

std::optional<bool> SystemFiles::Holds(const std::string& path, std::string_view bytes) {
  const UniqueFile file =
      OpenPatiently(patience(), SystemPath(path), GENERIC_READ, kShareAsReader, OPEN_EXISTING);
  if (!file) return std::nullopt;
  const auto piece = std::make_unique<char[]>(kPiece);
  for (;;) {
    DWORD got = 0;
    if (ReadFile(file.get(), piece.get(), kPiece, &got, nullptr) == 0) return std::nullopt;
    if (got == 0) return bytes.empty();
    if (bytes.substr(0, got) != std::string_view(piece.get(), got)) return false;
    bytes.remove_prefix(got);
  }
}

bool SystemFiles::Write(const std::string& path, std::string_view bytes) {
  const UniqueFile file =
      OpenPatiently(patience(), SystemPath(path), GENERIC_WRITE, FILE_SHARE_READ, CREATE_ALWAYS);
  if (!file) return false;
  DWORD written = 0;
  const auto wanted = static_cast<DWORD>(bytes.size());
  return WriteFile(file.get(), bytes.data(), wanted, &written, nullptr) != 0 && written == wanted &&
         FlushFileBuffers(file.get()) != 0;
}

bool SystemFiles::Move(const std::string& from, const std::string& to) {
  const std::wstring source = SystemPath(from), target = SystemPath(to);
  return Patiently(patience(), [&] {
    return MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) !=
           0;
  });
}

bool SystemFiles::Remove(const std::string& path) {
  const std::wstring file = SystemPath(path);
  return DeleteFileW(file.c_str()) != 0 || RemoveDirectoryW(file.c_str()) != 0;
}

bool SystemFiles::MakeFolder(const std::string& path) {
  const std::wstring whole = Wide(path);
  for (std::size_t end = whole.find(L'\\', 3); end != std::wstring::npos; end = whole.find(L'\\', end + 1)) {
    CreateDirectoryW(LongPath(whole.substr(0, end)).c_str(), nullptr);
  }
  return CreateDirectoryW(LongPath(whole).c_str(), nullptr) != 0 || GetLastError() == ERROR_ALREADY_EXISTS;
}

std::vector<FileEntry> SystemFiles::List(const std::string& folder) {
  std::vector<FileEntry> entries;
  WIN32_FIND_DATAW data{};
  const UniqueFind search(FindFirstFileW((SystemPath(folder) + L"\\*").c_str(), &data));
  if (!search) return entries;
  do {
    std::string name = Utf8(data.cFileName);
    if (name != "." && name != "..") entries.push_back({std::move(name), StampOf(data)});
  } while (FindNextFileW(search.get(), &data) != 0);
  return entries;
}

UtcTime SystemFiles::Now() {
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  return UtcTime(std::chrono::milliseconds(TicksOf(now) / 10000));
}

std::string SystemFiles::Identity(const std::string& path) {
  const std::wstring given = Wide(path);
  std::wstring whole(MAXSHORT, L'\0');
  const DWORD size = GetFullPathNameW(given.c_str(), MAXSHORT, whole.data(), nullptr);
  whole.resize(size < MAXSHORT ? size : 0);
  if (whole.empty()) whole = given;
  CharLowerBuffW(whole.data(), static_cast<DWORD>(whole.size()));
  return Utf8(whole);
}

std::unique_ptr<Held> SystemFiles::Lock(const std::string& path) {
  auto mutex = std::make_unique<NamedMutex>("lock-", Identity(path));
  return mutex->Own(patience()) ? std::move(mutex) : nullptr;
}

std::unique_ptr<Held> SystemFiles::Claim(const std::string& path) {
  auto mutex = std::make_unique<NamedMutex>("claim-", Identity(path));
  return mutex->existed() ? nullptr : std::move(mutex);
}

HistoryLimits UserLimits() {
  HKEY opened = nullptr;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, R"(Software\Brennic\BnSnipstore\2.0\More)", 0, KEY_QUERY_VALUE,
                    &opened) != ERROR_SUCCESS)
    return {};
  const UniqueRegKey key(opened);
  return LimitsFrom([&](const char* name) {
    std::string text(16, '\0');  // long enough for any number
    auto size = static_cast<DWORD>(text.size());
    const LSTATUS read =
        RegQueryValueExA(key.get(), name, nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()), &size);
    text.resize(read == ERROR_SUCCESS ? size : 0);
    return text.substr(0, text.find('\0'));
  });
}

std::string HistoryRoot() {
  std::wstring path(MAXSHORT, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAXSHORT));
  path.resize(path.find_last_of(L'\\') + 1);
  if (GetFileAttributesW((path + L"portable.txt").c_str()) != INVALID_FILE_ATTRIBUTES)
    return Utf8(path + L"History");
  path.assign(MAX_PATH, L'\0');
  if (SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path.data()) != S_OK)
    return {};
  path.resize(path.find(L'\0'));
  return Utf8(path + L"\\Brennic\\BnSnipstore\\History");
}

}  // namespace snip
