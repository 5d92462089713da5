#pragma once

#include <string>
#include <string_view>

#include "cli/system/CodePage.h"
#include "library/LineEndings.h"

namespace snip {

/// The encoding of an external text. A byte order mark overrides all but `Ansi`.
enum class Encoding {
  Auto,  ///< UTF-8 if the bytes are valid UTF-8, else the library's code page.
  Utf8,
  Utf16,             ///< Little endian without a mark.
  Ansi,              ///< The library's code page, byte for byte.
  AnsiUnlessMarked,  ///< The library's code page.
};

/// Converts an external text to the library's code page; line endings stay as they are.
AnsiText ReadInputText(std::string_view bytes, Encoding encoding, const CodePage& page);

/// Converts a library's text to UTF-8 with LF as line ending. CR LF is the usual kind.
ConvertedLines ToForeignText(std::string_view ansi, const CodePage& page);

/// A file editor's line ending after the last line is not part of the text.
std::string_view WithoutLastLineEnding(std::string_view text);

}  // namespace snip
