#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "cli/system/Failure.h"
#include "cli/system/Files.h"
#include "cli/system/SafeWrite.h"

namespace snip {
namespace {

[[noreturn]] void ThrowLastError(const std::string& path) {
  throw Failure(ExitCode::File, ToUtf8(ToPath(path)) + ": cannot be written: " + std::strerror(errno));
}

/// A new file in the folder of another; deleted unless it is released.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& beside)
      : path_(std::filesystem::path(beside).parent_path() / ".bns-XXXXXX"), file_(mkstemp(path_.data())) {
    if (file_ < 0) ThrowLastError(beside);
  }
  ~TemporaryFile() {
    close(file_);
    if (!path_.empty()) unlink(path_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  int file() const { return file_; }
  const std::string& path() const { return path_; }
  void Release() { path_.clear(); }

 private:
  std::string path_;
  int file_;
};

mode_t ModeOfNewFiles() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return fsync(file) == 0;
}

/// Renames the file, unless the name is taken.
bool TakeFreeName(const std::string& from, const std::string& to) {
  if (link(from.c_str(), to.c_str()) == 0) return unlink(from.c_str()) == 0;
  const bool noHardLinks = errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS;
  return noHardLinks && access(to.c_str(), F_OK) != 0 && std::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace

void WriteFileSafely(const std::string& path, std::string_view bytes, Existing existing) {
  std::error_code error;
  const std::filesystem::path followed = std::filesystem::canonical(path, error);
  const bool exists = !error;
  if (exists && existing == Existing::Keep) {
    throw Failure(ExitCode::Refused, ToUtf8(path) + ": already exists");
  }
  const std::string target = exists ? followed.native() : path;
  struct stat old {};
  if (exists) {
    if (stat(target.c_str(), &old) != 0) ThrowLastError(path);
    if (!S_ISREG(old.st_mode)) throw Failure(ExitCode::File, ToUtf8(path) + ": is not a regular file");
    // Do not replace a read-only file, although the folder would allow it.
    if (access(target.c_str(), W_OK) != 0) ThrowLastError(path);
  }
  TemporaryFile temporary(target);
  if (!WriteAll(temporary.file(), bytes)) ThrowLastError(path);
  // Only the superuser can change the owner; for others the error is expected. The owner comes before the
  // mode, because changing the owner clears bits of the mode.
  if (exists && fchown(temporary.file(), old.st_uid, old.st_gid) != 0 && errno != EPERM) ThrowLastError(path);
  if (fchmod(temporary.file(), exists ? old.st_mode & 07777U : ModeOfNewFiles()) != 0) ThrowLastError(path);
  const bool placed = exists ? std::rename(temporary.path().c_str(), target.c_str()) == 0
                             : TakeFreeName(temporary.path(), target);
  if (!placed) {
    if (errno == EEXIST) throw Failure(ExitCode::Refused, ToUtf8(path) + ": already exists");
    ThrowLastError(path);
  }
  temporary.Release();
}

}  // namespace snip
