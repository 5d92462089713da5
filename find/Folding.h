#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "library/LetterTable.h"

namespace snip {

/// Which characters of a code page a search treats as equal: letters regardless of case and accents.
/// Characters of several bytes are equal only if all bytes are, and are never split.
class Folding {
 public:
  enum class Bytes { One, Two, Utf8 };  ///< The most bytes that a character has.

  /// For a code page with one byte per character; `characters` maps each byte to Unicode.
  Folding(const LetterTable& letters, const std::array<char32_t, 256>& characters);
  /// For a code page in which a lead byte forms one character with the next byte.
  static Folding DoubleByte(const std::array<bool, 256>& leadBytes);
  static Folding Utf8();

  Bytes bytes() const { return bytes_; }
  /// The form of a one-byte character that is compared.
  char Fold(char byte) const { return fold_[static_cast<unsigned char>(byte)]; }
  std::string Fold(std::string_view text) const;
  /// Whether the byte belongs to a letter or digit, or is an underscore.
  bool IsWord(char byte) const { return word_[static_cast<unsigned char>(byte)]; }
  bool IsCapital(char byte) const { return capital_[static_cast<unsigned char>(byte)]; }
  bool IsLead(char byte) const { return lead_[static_cast<unsigned char>(byte)]; }
  /// Whether a character begins at `at`.
  bool BeginsCharacter(std::string_view text, std::size_t at) const;

 private:
  explicit Folding(Bytes bytes);

  Bytes bytes_ = Bytes::One;
  std::array<char, 256> fold_{};
  std::array<bool, 256> word_{};
  std::array<bool, 256> capital_{};
  std::array<bool, 256> lead_{};
};

}  // namespace snip
