#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

#include "cli/ExitCode.h"

namespace snip {

/// Ends a command with a message (UTF-8, without a full stop) and an exit code.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
  ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

/// A place in a file's bytes that is not of its format. Whoever knows the file's name turns it into a
/// Failure.
class Malformed : public std::runtime_error {
 public:
  /// `line` counts from 1.
  Malformed(std::size_t line, const std::string& message) : std::runtime_error(message), line_(line) {}
  std::size_t line() const { return line_; }

 private:
  std::size_t line_;
};

}  // namespace snip
