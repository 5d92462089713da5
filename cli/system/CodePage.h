#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

#include "library/LetterTable.h"

namespace snip {

/// Text converted into a library's code page.
struct AnsiText {
  std::string text;
  std::size_t lost = 0;  ///< Characters outside the code page; each became "?".
};

/// A code page in which every byte is one character.
class CodePage : public LetterTable {
 public:
  /// The code page of the libraries on this machine: on Windows the ANSI code page, elsewhere Windows-1252.
  /// Throws a Failure if that has characters of two bytes.
  static CodePage System();
  /// Western European. Its five undefined bytes are control characters, as on Windows.
  static CodePage Windows1252();

  std::string ToUtf8(std::string_view ansi) const;
  AnsiText FromUtf8(std::string_view utf8) const;
  /// Text in UTF-16 without a byte order mark.
  AnsiText FromUtf16(std::string_view bytes, bool bigEndian) const;

 private:
  /// Creates a code page by its number on Windows.
  explicit CodePage(unsigned int number);
  void Append(AnsiText& to, char32_t character) const;

  std::array<std::string, 256> utf8_;
  std::unordered_map<char32_t, char> bytes_;
};

}  // namespace snip
