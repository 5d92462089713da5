#include "cli/system/Files.h"

#include <utf8cpp/utf8.h>

#include <cstdio>
#include <iostream>
#include <memory>

#include "cli/system/Failure.h"

namespace snip {

std::filesystem::path ToPath(const std::string& utf8) {
#ifdef _WIN32
  if (!utf8::is_valid(utf8)) throw Failure(ExitCode::Usage, "a path is not UTF-8");
  return {std::u8string(utf8.begin(), utf8.end())};
#else
  return {utf8};
#endif
}

std::string ToUtf8(const std::filesystem::path& path) {
#ifdef _WIN32
  const std::u8string utf8 = path.u8string();
  return utf8::replace_invalid(std::string(utf8.begin(), utf8.end()));
#else
  return utf8::replace_invalid(path.native());
#endif
}

std::string NameOf(const std::string& path) {
  return path == "-" ? "the standard input" : ToUtf8(ToPath(path));
}

InputFile::InputFile(const std::string& path) : name_(NameOf(path)) {
  if (path == "-") {
    stream_ = &std::cin;
    return;
  }
  std::error_code ignored;
  if (std::filesystem::is_directory(ToPath(path), ignored)) {
    throw Failure(ExitCode::File, name_ + ": is a folder");
  }
  file_.open(ToPath(path), std::ios::binary);
  if (!file_) throw Failure(ExitCode::File, name_ + ": cannot be opened");
}

std::size_t InputFile::Read(std::span<char> room) {
  stream_->read(room.data(), static_cast<std::streamsize>(room.size()));
  if (stream_->bad() || (stream_ == &std::cin && std::ferror(stdin) != 0))
    throw Failure(ExitCode::File, name_ + ": cannot be read");
  return static_cast<std::size_t>(stream_->gcount());
}

bool InputFile::Rewind() {
  if (stream_ != &file_) return false;
  file_.clear();
  const bool done = !file_.seekg(0).fail();
  file_.clear();
  return done;
}

std::string InputFile::ReadAll() {
  // No library or snippet file is larger, and a 32-bit process could not hold it twice.
  constexpr std::size_t largest = std::size_t{256} << 20U;
  const auto piece = std::make_unique<char[]>(kWrittenPiece);
  std::string bytes;
  while (const std::size_t got = Read({piece.get(), kWrittenPiece})) {
    bytes.append(piece.get(), got);
    if (bytes.size() > largest) throw Failure(ExitCode::File, name_ + ": is larger than 256 MB");
  }
  return bytes;
}

}  // namespace snip
