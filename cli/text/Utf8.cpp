#include "cli/text/Utf8.h"

#include <cstddef>

namespace snip {

char32_t TakeUtf8(std::string_view& rest) {
  const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
  const unsigned char lead = byteAt(0);
  std::size_t length = 0;
  char32_t least = 0;  // the smallest character that needs so many bytes
  if (lead < 0x80) {
    length = 1;
  } else if (lead >= 0xC2 && lead < 0xE0) {
    length = 2;
    least = 0x80;
  } else if (lead >= 0xE0 && lead < 0xF0) {
    length = 3;
    least = 0x800;
  } else if (lead >= 0xF0 && lead < 0xF5) {
    length = 4;
    least = 0x10000;
  }
  char32_t character = kNoCharacter;
  if (length != 0 && length <= rest.size()) {
    character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
      if ((byteAt(i) & 0xC0U) != 0x80) {
        rest.remove_prefix(1);
        return kNoCharacter;
      }
      character = character << 6U | (byteAt(i) & 0x3FU);
    }
    const bool surrogate = character >= 0xD800 && character < 0xE000;
    if (character < least || surrogate || character > 0x10FFFF) character = kNoCharacter;
  }
  rest.remove_prefix(character == kNoCharacter ? 1 : length);
  return character;
}

void AppendUtf8(std::string& to, char32_t character) {
  const auto append = [&](char32_t byte) { to += static_cast<char>(byte); };
  const auto following = [](char32_t bits) { return 0x80U | (bits & 0x3FU); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0U | character >> 6U);
    append(following(character));
  } else if (character < 0x10000) {
    append(0xE0U | character >> 12U);
    append(following(character >> 6U));
    append(following(character));
  } else {
    append(0xF0U | character >> 18U);
    append(following(character >> 12U));
    append(following(character >> 6U));
    append(following(character));
  }
}

bool IsUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    if (TakeUtf8(bytes) == kNoCharacter) return false;
  }
  return true;
}

std::string ValidUtf8(std::string_view bytes) {
  std::string text;
  while (!bytes.empty()) {
    const char32_t character = TakeUtf8(bytes);
    AppendUtf8(text, character == kNoCharacter ? U'\uFFFD' : character);
  }
  return text;
}

}  // namespace snip
