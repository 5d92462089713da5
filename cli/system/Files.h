#pragma once

#include <filesystem>
#include <fstream>
#include <istream>
#include <string>

#include "library/ByteSource.h"

namespace snip {

/// A path from the command line, which is UTF-8 on Windows and any bytes elsewhere.
std::filesystem::path ToPath(const std::string& utf8);
/// A path for messages and JSON: always UTF-8.
std::string ToUtf8(const std::filesystem::path& path);

/// The bytes of a file, or of the standard input.
class InputFile : public ByteSource {
 public:
  /// Opens the file of that path, or for "-" takes the standard input; throws a Failure.
  explicit InputFile(const std::string& path);

  /// Throws a Failure if reading fails.
  std::size_t Read(std::span<char> room) override;
  bool Failed() const override { return false; }

  /// Goes back to the beginning; false if that is not possible, for example for a pipe.
  bool Rewind() override;

  /// All bytes that are left; throws a Failure if there are more than 256 MB.
  std::string ReadAll();

 private:
  std::string name_;  ///< For messages.
  std::ifstream file_;
  std::istream* stream_ = &file_;
};

/// The file's name for messages: its path, or "the standard input".
std::string NameOf(const std::string& path);

}  // namespace snip
