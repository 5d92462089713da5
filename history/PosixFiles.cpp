#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <utility>

#include "history/SystemFiles.h"

namespace snip {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 18U;

class Descriptor : public Held {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() override {
    if (number_ >= 0) close(number_);
  }
  int number() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }
  /// Closes the file; true if everything succeeded.
  bool Close() { return close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

std::unique_ptr<Descriptor> LockFile(Patience& patience, const std::string& path, int attempts) {
  auto file =
      std::make_unique<Descriptor>(open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  for (int attempt = 0; *file && flock(file->number(), LOCK_EX | LOCK_NB) != 0; ++attempt) {
    if (attempt + 1 >= attempts || patience.Take(kLockPause) < kLockPause) return nullptr;
    std::this_thread::sleep_for(kLockPause);
  }
  return file;
}

}  // namespace

std::optional<FileStamp> SystemFiles::Stamp(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    return errno == ENOENT || errno == ENOTDIR ? std::optional(FileStamp{}) : std::nullopt;
  }
  if (!S_ISREG(status.st_mode)) return std::nullopt;
  return FileStamp{true, static_cast<std::uint64_t>(status.st_size),
                   std::int64_t{status.st_mtim.tv_sec} * 10000000 + status.st_mtim.tv_nsec / 100};
}

std::optional<std::string> SystemFiles::Read(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status {};
  if (!file || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t got = read(file.number(), bytes.data() + done, bytes.size() - done);
    if (got <= 0) return std::nullopt;
    done += static_cast<std::size_t>(got);
  }
  return bytes;
}

std::optional<bool> SystemFiles::Holds(const std::string& path, std::string_view bytes) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) return std::nullopt;
  const auto piece = std::make_unique<char[]>(kPiece);
  for (;;) {
    const ssize_t got = read(file.number(), piece.get(), kPiece);
    if (got < 0) return std::nullopt;
    const auto size = static_cast<std::size_t>(got);
    if (size == 0) return bytes.empty();
    if (bytes.substr(0, size) != std::string_view(piece.get(), size)) return false;
    bytes.remove_prefix(size);
  }
}

bool SystemFiles::Write(const std::string& path, std::string_view bytes) {
  Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  if (!file) return false;
  while (!bytes.empty()) {
    const ssize_t written = write(file.number(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return fsync(file.number()) == 0 && file.Close();
}

bool SystemFiles::Move(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str()) == 0;
}

bool SystemFiles::Remove(const std::string& path) {
  return std::remove(path.c_str()) == 0;
}

bool SystemFiles::MakeFolder(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  return std::filesystem::is_directory(path, error);
}

std::vector<FileEntry> SystemFiles::List(const std::string& folder) {
  std::vector<FileEntry> entries;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    entries.push_back(
        {entry->path().filename().native(), Stamp(entry->path().native()).value_or(FileStamp())});
  }
  return entries;
}

UtcTime SystemFiles::Now() {
  return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

std::string SystemFiles::Identity(const std::string& path) {
  std::error_code error;
  const auto whole = std::filesystem::weakly_canonical(path, error);
  return error ? path : whole.native();
}

std::unique_ptr<Held> SystemFiles::Lock(const std::string& path) {
  return LockFile(patience(), path, kLockAttempts);
}

std::unique_ptr<Held> SystemFiles::Claim(const std::string& path) {
  auto file = LockFile(patience(), path, 1);
  return file && *file ? std::move(file) : nullptr;
}

HistoryLimits UserLimits() {
  return {};
}

std::string HistoryRoot() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  if (!error && std::filesystem::exists(program / "portable.txt", error))
    return (program / "History").native();
  const char* const state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state == '/') return std::string(state) + "/Brennic/BnSnipstore/History";
  const char* const home = std::getenv("HOME");
  return home == nullptr ? "" : std::string(home) + "/.local/state/Brennic/BnSnipstore/History";
}

}  // namespace snip
