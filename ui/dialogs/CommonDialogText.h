#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace snip {

// The texts of the system's common dialogs, as its structures need them.

/// "description|pattern|..." with a zero byte for each bar and two more at the end.
std::string FilterText(std::string_view filter);

bool HasWildcards(std::string_view fileName);

/// The part after the last "\".
std::string NamePart(const std::string& path);

/// The name proposed for saving, padded with zero bytes to 255; a longer one is not truncated.
std::string SaveNameBuffer(const std::string& fileName);

/// The text before a buffer's first zero byte, nothing when there is none.
std::optional<std::string> TextBeforeNul(const std::string& buffer);

using FaceNameField = std::array<char, 32>;

/// A font's face name, truncated or padded with zero bytes to the field's size. A name that fills the field
/// has no zero byte after it.
FaceNameField FaceNameFieldOf(std::string_view faceName);

}  // namespace snip
