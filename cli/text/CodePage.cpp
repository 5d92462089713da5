#include "cli/text/CodePage.h"

#ifdef _WIN32
#include <windows.h>
#endif

#include <algorithm>

#include "cli/Failure.h"
#include "cli/text/Utf8.h"

namespace snip {
namespace {

/// The small letter of a capital among the characters that single-byte code pages have.
char32_t LowerOf(char32_t c) {
  if (c >= U'A' && c <= U'Z') return c + 0x20;
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return c + 0x20;  // Latin-1, without the times sign
  if (c >= 0x391 && c <= 0x3A9) return c + 0x20;             // Greek
  if (c >= 0x410 && c <= 0x42F) return c + 0x20;             // Cyrillic
  if (c >= 0x400 && c <= 0x40F) return c + 0x50;             // Cyrillic, of other languages
  if (c == 0x178) return 0xFF;                               // Y with diaeresis
  const bool evenIsCapital = (c >= 0x100 && c <= 0x137) || (c >= 0x14A && c <= 0x177);
  const bool oddIsCapital = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
  if (evenIsCapital && c % 2 == 0) return c + 1;
  if (oddIsCapital && c % 2 == 1) return c + 1;
  return c;
}

bool IsWordCharacter(char32_t c) {
  const bool digit = c >= U'0' && c <= U'9';
  const bool asciiLetter = LowerOf(c) >= U'a' && LowerOf(c) <= U'z';
  const bool otherLetter = c >= 0xC0 && c < 0x2000 && c != 0xD7 && c != 0xF7;
  return digit || asciiLetter || otherLetter || c == U'_' || c == 0xAA || c == 0xB5 || c == 0xBA;
}

}  // namespace

CodePage::CodePage(const std::array<char32_t, 256>& characters) {
  for (std::size_t i = 0; i < characters.size(); ++i) {
    AppendUtf8(utf8_[i], characters[i]);
    bytes_.emplace(characters[i], static_cast<char>(i));
    word[i] = IsWordCharacter(characters[i]);
  }
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const auto small = bytes_.find(LowerOf(characters[i]));
    lower[i] = small != bytes_.end() ? small->second : static_cast<char>(i);
  }
}

CodePage CodePage::Windows1252() {
  // Bytes 80 to 9F; all others are the character of their own number.
  static constexpr std::array<char16_t, 32> special = {
      0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
      0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
  std::array<char32_t, 256> characters{};
  for (std::size_t i = 0; i < characters.size(); ++i) characters[i] = static_cast<char32_t>(i);
  std::copy(special.begin(), special.end(), characters.begin() + 0x80);
  return CodePage(characters);
}

#ifdef _WIN32
CodePage CodePage::System() {
  CPINFO info{};
  if (GetCPInfo(CP_ACP, &info) == 0 || info.MaxCharSize != 1) {
    throw Failure(ExitCode::Refused,
                  "this system's ANSI code page has characters of several bytes; bns knows "
                  "only code pages with one byte a character");
  }
  std::array<char32_t, 256> characters{};
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const char byte = static_cast<char>(i);
    wchar_t character = 0;
    MultiByteToWideChar(CP_ACP, 0, &byte, 1, &character, 1);
    characters[i] = character;
  }
  return CodePage(characters);
}
#else
CodePage CodePage::System() {
  return Windows1252();
}
#endif

std::string CodePage::ToUtf8(std::string_view ansi) const {
  std::string utf8;
  utf8.reserve(ansi.size());
  for (const char byte : ansi) utf8 += utf8_[static_cast<unsigned char>(byte)];
  return utf8;
}

void CodePage::Append(AnsiText& to, char32_t character) const {
  const auto byte = bytes_.find(character);
  to.text += byte != bytes_.end() ? byte->second : '?';
  to.lost += byte == bytes_.end() ? 1 : 0;
}

AnsiText CodePage::FromUtf8(std::string_view utf8) const {
  AnsiText ansi;
  ansi.text.reserve(utf8.size());
  while (!utf8.empty()) Append(ansi, TakeUtf8(utf8));
  return ansi;
}

AnsiText CodePage::FromUtf16(std::string_view bytes, bool bigEndian) const {
  AnsiText ansi;
  const auto unitAt = [&](std::size_t i) {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    return static_cast<char32_t>(bigEndian ? first << 8U | second : second << 8U | first);
  };
  std::size_t i = 0;
  for (; i + 1 < bytes.size(); i += 2) {
    const char32_t unit = unitAt(i);
    const bool paired = unit >= 0xD800 && unit < 0xDC00 && i + 3 < bytes.size() && unitAt(i + 2) >= 0xDC00 &&
                        unitAt(i + 2) < 0xE000;
    // What takes two units is in no code page of one byte a character.
    Append(ansi, paired ? kNoCharacter : unit);
    if (paired) i += 2;
  }
  if (i < bytes.size()) Append(ansi, kNoCharacter);
  return ansi;
}

}  // namespace snip
