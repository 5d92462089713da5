#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace snip {

/// The pure half of registry access: texts and byte layouts, without the registry.

/// The message for a result code of a registry function; none for 0 (success) and 2 (not found), which are no
/// errors to the user.
std::optional<std::string> RegistryErrorMessage(std::int32_t code);

/// Two upper-case hexadecimal digits for each byte.
std::string StrToHex(std::string_view bytes);

/// "Software\company\application\section"; nothing is trimmed or checked, and `application` may hold a
/// backslash of its own.
std::string SettingsKeyPath(std::string_view company, std::string_view application, std::string_view section);

/// The four bytes written for a REG_DWORD: the first four *characters* of the number in decimal, filled up
/// with zero bytes. Stores that were written this way have to read the same, so the digits stay.
/// Nothing when `text` is no number that fits 32 bits; fractions are rounded, halves to even.
std::optional<std::string> NumberValueData(const std::string& text);

/// The data of a REG_MULTI_SZ: `text`, then each of `extraStrings` that is not empty and not a lone zero
/// character, each with a zero byte behind it, and one more zero byte at the end.
std::string MultiStringData(const std::string& text, std::span<const std::string> extraStrings);

/// The strings of a REG_MULTI_SZ in order, up to the first empty one.
std::vector<std::string> SplitMultiString(std::string_view data);

}  // namespace snip
