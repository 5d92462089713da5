#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "library/LetterTable.h"

namespace snip {

/// Which characters of a code page a search takes for the same: letters without regard to case and accents.
/// Characters of several bytes are the same only if all their bytes are, and are never split.
class Folding {
 public:
  enum class Bytes { One, Two, Utf8 };  ///< How many a character has at most.

  /// For a code page with one byte a character; `characters` says in Unicode which each byte is.
  Folding(const LetterTable& letters, const std::array<char32_t, 256>& characters);
  /// For a code page in which some bytes, the lead bytes, make one character with the byte behind them.
  static Folding DoubleByte(const std::array<bool, 256>& leadBytes);
  static Folding Utf8();

  Bytes bytes() const { return bytes_; }
  /// A character of one byte as it is compared.
  char Fold(char byte) const { return fold_[static_cast<unsigned char>(byte)]; }
  std::string Fold(std::string_view text) const;
  /// Whether the byte is of a letter or a digit, or an underscore.
  bool IsWord(char byte) const { return word_[static_cast<unsigned char>(byte)]; }
  bool IsCapital(char byte) const { return capital_[static_cast<unsigned char>(byte)]; }
  bool IsLead(char byte) const { return lead_[static_cast<unsigned char>(byte)]; }
  /// Whether a character begins at that place of the text.
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
