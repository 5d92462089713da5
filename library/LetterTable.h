#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace snip {

/// What the letters of a code page with one byte a character are.
struct LetterTable {
  std::array<char, 256> lower{};  ///< For each byte, the byte of its small letter, or the byte itself.
  std::array<bool, 256> word{};   ///< Whether the byte is a letter, a digit or an underscore.

  char Lower(char byte) const { return lower[static_cast<unsigned char>(byte)]; }
  bool IsWord(char byte) const { return word[static_cast<unsigned char>(byte)]; }

  std::string Lower(std::string_view text) const {
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(), [this](char byte) { return Lower(byte); });
    return small;
  }
};

}  // namespace snip
