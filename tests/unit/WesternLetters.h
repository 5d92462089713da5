#pragma once

#include "library/LetterTable.h"

namespace snip::test {

/// The letters of ISO 8859-1.
inline LetterTable WesternLetters() {
  LetterTable letters;
  for (int i = 0; i < 256; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const bool capital = (i >= 'A' && i <= 'Z') || (i >= 0xC0 && i <= 0xDE && i != 0xD7);
    letters.lower[at] = static_cast<char>(capital ? i + 0x20 : i);
    letters.word[at] = capital || i == '_' || (i >= '0' && i <= '9') || (i >= 'a' && i <= 'z') || i >= 0xDF;
  }
  return letters;
}

}  // namespace snip::test
