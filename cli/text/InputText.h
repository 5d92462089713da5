#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "cli/text/CodePage.h"

namespace snip {

/// How the bytes of a text from outside are to be read. A byte order mark goes before all but `Ansi`.
enum class Encoding {
  Auto,  ///< UTF-8 where the bytes are that, else the library's code page.
  Utf8,
  Utf16,             ///< Little endian without a mark.
  Ansi,              ///< The library's code page, byte for byte.
  AnsiUnlessMarked,  ///< The library's code page.
};

/// Brings a text from outside into the library's code page; line ends stay as they are.
AnsiText ReadInputText(std::string_view bytes, Encoding encoding, const CodePage& page);

/// A text with CR LF for every line end.
struct CrLfText {
  std::string text;
  std::size_t changed = 0;  ///< Line ends of another kind than the text's first.
};

/// Makes CR LF of every line end: CR LF, LF or CR.
CrLfText WithCrLf(std::string_view text);

/// What a file editor puts behind the last line is no line of its own.
std::string_view WithoutLastLineEnd(std::string_view text);

}  // namespace snip
