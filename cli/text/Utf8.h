#pragma once

#include <string>
#include <string_view>

namespace snip {

/// What a decoder answers for bytes that are no character.
inline constexpr char32_t kNoCharacter = 0xFFFFFFFF;

/// Takes the first character off `rest`, which must not be empty. Bytes that are not UTF-8 (overlong forms
/// and surrogates included) are taken one at a time, as kNoCharacter.
char32_t TakeUtf8(std::string_view& rest);

void AppendUtf8(std::string& to, char32_t character);

bool IsUtf8(std::string_view bytes);

/// The text with bytes that are not UTF-8 exchanged for U+FFFD.
std::string ValidUtf8(std::string_view bytes);

}  // namespace snip
