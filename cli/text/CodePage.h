#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace snip {

/// Text brought into a library's code page.
struct AnsiText {
  std::string text;
  std::size_t lost = 0;  ///< Characters that the code page does not have; each became "?".
};

/// The code page that a library's bytes are in: one byte a character, every byte a character.
class CodePage {
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

  /// The byte of the small letter, for a capital that has one in this code page.
  char Lower(char byte) const { return lower_[static_cast<unsigned char>(byte)]; }
  std::string Lower(std::string_view ansi) const;
  /// Whether the byte is a letter, a digit or an underscore.
  bool IsWord(char byte) const { return word_[static_cast<unsigned char>(byte)]; }

 private:
  void Append(AnsiText& to, char32_t character) const;

  std::array<std::string, 256> utf8_;
  std::array<char, 256> lower_{};
  std::array<bool, 256> word_{};
  std::unordered_map<char32_t, char> bytes_;
};

}  // namespace snip
