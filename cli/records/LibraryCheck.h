#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "cli/text/CodePage.h"

namespace snip {

enum class Severity {
  Warning,  ///< Reads well, but may not be what its writer meant.
  Error,    ///< Text is lost or read as something else.
};

/// Something wrong in a library file.
struct Fault {
  std::size_t line = 1;  ///< From 1.
  Severity severity = Severity::Warning;
  std::string message;  ///< UTF-8.
  /// Reading the library and writing it again drops or changes something that the file holds.
  bool lostOnSave = false;
};

/// The faults of a library file, in the order of its lines.
std::vector<Fault> CheckLibrary(std::string_view bytes, const CodePage& page);

}  // namespace snip
