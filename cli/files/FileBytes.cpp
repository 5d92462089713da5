#include "cli/files/FileBytes.h"

#ifndef _WIN32
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <fstream>
#include <utility>

#include "cli/Failure.h"
#include "cli/files/Paths.h"

namespace snip {
namespace {

// No library and no file of another tool is that large; a 32-bit process could not hold it twice.
constexpr std::size_t kLargest = std::size_t{256} << 20U;

[[noreturn]] void ThrowTooLarge(const std::string& path) {
  throw Failure(ExitCode::File, ToUtf8(ToPath(path)) + ": the file is larger than 256 MB");
}

/// For files that cannot be mapped: pipes, and all on Windows.
std::string ReadCopy(const std::string& path) {
  const std::filesystem::path file = ToPath(path);
  std::error_code ignored;
  if (std::filesystem::is_directory(file, ignored)) {
    throw Failure(ExitCode::File, ToUtf8(file) + ": is a folder");
  }
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw Failure(ExitCode::File, ToUtf8(file) + ": cannot be opened");
  std::string bytes;
  constexpr std::size_t piece = 1U << 16U;
  std::string buffer(piece, '\0');
  while (stream) {
    stream.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    bytes.append(buffer, 0, static_cast<std::size_t>(stream.gcount()));
    if (bytes.size() > kLargest) ThrowTooLarge(path);
  }
  if (stream.bad()) throw Failure(ExitCode::File, ToUtf8(file) + ": cannot be read");
  return bytes;
}

}  // namespace

#ifdef _WIN32
FileBytes::FileBytes(const std::string& path) : copy_(ReadCopy(path)) {}
FileBytes::~FileBytes() = default;
#else
FileBytes::FileBytes(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  const bool regular =
      file >= 0 && fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0;
  if (regular && static_cast<std::size_t>(status.st_size) <= kLargest) {
    size_ = static_cast<std::size_t>(status.st_size);
    void* const place = mmap(nullptr, size_, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
    if (place != MAP_FAILED) mapped_ = static_cast<const char*>(place);
  }
  if (file >= 0) close(file);
  if (regular && static_cast<std::size_t>(status.st_size) > kLargest) ThrowTooLarge(path);
  if (mapped_ == nullptr) copy_ = ReadCopy(path);
}

FileBytes::~FileBytes() {
  if (mapped_ != nullptr) munmap(const_cast<char*>(mapped_), size_);
}
#endif

FileBytes::FileBytes(FileBytes&& other) noexcept
    : mapped_(std::exchange(other.mapped_, nullptr)), size_(other.size_), copy_(std::move(other.copy_)) {}

FileBytes FileBytes::Of(std::string bytes) {
  FileBytes file;
  file.copy_ = std::move(bytes);
  return file;
}

}  // namespace snip
