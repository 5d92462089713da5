#include "ui/find/SystemFolding.h"

#include <windows.h>

#include <array>

namespace snip {

Folding SystemFolding() {
  CPINFO info{};
  GetCPInfo(CP_ACP, &info);
  if (GetACP() == CP_UTF8) return Folding::Utf8();
  if (info.MaxCharSize > 1) {
    std::array<bool, 256> leadBytes{};
    for (unsigned int byte = 0; byte < leadBytes.size(); ++byte) {
      leadBytes[byte] = IsDBCSLeadByte(static_cast<BYTE>(byte)) != 0;
    }
    return Folding::DoubleByte(leadBytes);
  }
  LetterTable letters;
  std::array<char32_t, 256> characters{};
  for (std::size_t i = 0; i < characters.size(); ++i) {
    char byte = static_cast<char>(i);
    wchar_t character = 0;
    MultiByteToWideChar(CP_ACP, 0, &byte, 1, &character, 1);
    characters[i] = character;
    letters.word[i] = byte == '_' || IsCharAlphaNumericA(byte) != 0;
    CharLowerBuffA(&byte, 1);
    letters.lower[i] = byte;
  }
  return {letters, characters};
}

}  // namespace snip
