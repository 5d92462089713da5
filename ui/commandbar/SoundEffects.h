#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/Registry32.h"

namespace snip {

/// Plays the sounds that the user's sound scheme assigns to events. A sound plays in the background and cuts
/// off the one playing; an event without a playable file is silent.
class SoundEffects {
 public:
  /// Plays a sound file; an empty name plays nothing.
  using Player = std::function<void(const std::string& fileName)>;

  /// Plays by the system.
  explicit SoundEffects(const Registry32& registry);
  SoundEffects(const Registry32& registry, Player player);

  /// A standard event by its place in the table (see SystemSounds.h); another number normally plays nothing.
  void PlaySystemSound(std::int16_t index) const;
  /// An event of the Office 97 scheme, such as "ToolbarClick".
  void PlayOfficeSound(std::string_view eventName) const;
  /// An event of the Office 97 scheme when `office` is exactly true (-1), else of the default scheme.
  void PlaySound(std::string_view eventName, std::int16_t office) const;

 private:
  void PlayEvent(const std::string& registryKey) const;

  const Registry32& registry_;
  Player player_;
};

}  // namespace snip
