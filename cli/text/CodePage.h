#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

#include "library/LetterTable.h"

namespace snip {

/// Text brought into a library's code page.
struct AnsiText {
  std::string text;
  std::size_t lost = 0;  ///< Characters that the code page does not have; each became "?".
};

/// The code page that a library's bytes are in: one byte a character, every byte a character.
class CodePage : public LetterTable {
 public:
  /// The characters that the 256 bytes stand for.
  explicit CodePage(const std::array<char32_t, 256>& characters);

  /// Western European; the five bytes that it leaves undefined are control characters, as Windows has them.
  static CodePage Windows1252();
  /// The code page of the libraries on this machine: on Windows the system's, elsewhere Windows-1252.
  /// Throws a Failure where the system's has characters of two bytes.
  static CodePage System();

  std::string ToUtf8(std::string_view ansi) const;
  AnsiText FromUtf8(std::string_view utf8) const;
  AnsiText FromUtf16(std::string_view bytes, bool bigEndian) const;

 private:
  void Append(AnsiText& to, char32_t character) const;

  std::array<std::string, 256> utf8_;
  std::unordered_map<char32_t, char> bytes_;
};

}  // namespace snip
