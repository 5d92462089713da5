#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "library/BnsScanner.h"
#include "library/LetterTable.h"

namespace snip {

/// A problem in a library file.
struct Problem {
  enum class Severity {
    Warning,  ///< Can be read, but may not be what its author meant.
    Error,    ///< Text is lost or read as something else.
  };

  std::size_t line = 1;  ///< From 1.
  Severity severity = Severity::Warning;
  std::string message;  ///< In the library's code page.
  /// Reading the library and writing it again drops or changes data in the file.
  bool lostOnSave = false;
};

/// The problems of a library file, in the order of its lines.
std::vector<Problem> CheckLibrary(ByteSource& bytes, const LetterTable& letters);
std::vector<Problem> CheckLibrary(std::string_view bytes, const LetterTable& letters);

/// Why a file whose first line names no version is not a library, for people.
std::string WhyNotALibrary(const BnsScanner& scanner);

}  // namespace snip
