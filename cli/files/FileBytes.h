#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace snip {

/// The bytes of a file, to look at. A regular file is mapped into memory where the system can, so that a
/// large one is not copied; it must not be shortened meanwhile.
class FileBytes {
 public:
  /// Reads the file of that path (UTF-8); throws a Failure.
  explicit FileBytes(const std::string& path);
  /// Takes bytes that come from elsewhere.
  static FileBytes Of(std::string bytes);
  FileBytes(FileBytes&& other) noexcept;
  FileBytes& operator=(FileBytes&&) = delete;
  FileBytes(const FileBytes&) = delete;
  FileBytes& operator=(const FileBytes&) = delete;
  ~FileBytes();

  std::string_view view() const { return mapped_ != nullptr ? std::string_view(mapped_, size_) : copy_; }

 private:
  FileBytes() = default;

  const char* mapped_ = nullptr;
  std::size_t size_ = 0;
  std::string copy_;
};

}  // namespace snip
