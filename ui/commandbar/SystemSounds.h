#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace snip {

/// The standard sound events that the program plays, by their place in the table of events.
namespace SystemSound {
constexpr std::int16_t kMenuCommand = 8;
constexpr std::int16_t kMenuPopup = 9;
constexpr std::int16_t kAsterisk = 14;
constexpr std::int16_t kExclamation = 15;
constexpr std::int16_t kHand = 17;
constexpr std::int16_t kQuestion = 18;
}  // namespace SystemSound

/// The registry's name of a standard event, 0-based; empty for a number that is not in the table.
std::string_view SystemSoundEventName(std::int16_t index);

/// The key under HKEY_CURRENT_USER whose default value names the sound file of an event of the default
/// scheme.
std::string DefaultSchemeSoundKey(std::string_view eventName);

/// The same for an event of the Office 97 scheme, its name without the "Office97-" prefix.
std::string OfficeSchemeSoundKey(std::string_view eventName);

}  // namespace snip
