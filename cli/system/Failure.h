#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace snip {

/// What `bns` returns to its caller; scripts rely on these numbers.
enum class ExitCode {
  Done = 0,
  No = 1,         ///< Nothing found, problems found, some snippets skipped, a difference, or a conflict.
  Usage = 2,      ///< The command line is wrong.
  File = 3,       ///< A file could not be read or written.
  Malformed = 4,  ///< A file does not have the expected format.
  Refused = 5,    ///< It would lose or overwrite something. Nothing was written.
};

/// Ends a command with a message (UTF-8, without a full stop) and an exit code.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
  ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

/// A format error in a file's bytes. The caller knows the file's name and makes a Failure of it.
class Malformed : public std::runtime_error {
 public:
  /// `line` counts from 1.
  Malformed(std::size_t line, const std::string& message) : std::runtime_error(message), line_(line) {}
  std::size_t line() const { return line_; }

 private:
  std::size_t line_;
};

}  // namespace snip
