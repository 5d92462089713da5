#pragma once

#include <cstdint>
#include <string>

namespace snip {

/// A system-wide key, in the form of the system's hot-key control.
struct HotKey {
  enum Held : std::uint8_t { kShift = 1, kControl = 2, kAlt = 4 };

  std::uint8_t key = 0;   ///< A virtual key; 0 for no key.
  std::uint8_t held = 0;  ///< Modifier keys, combined by or.

  bool empty() const { return key == 0; }
  /// As one number, for storing.
  std::string Text() const { return std::to_string(held * 256 + key); }
  /// An empty key for a text that is not such a number.
  static HotKey FromText(const std::string& text);
  friend bool operator==(const HotKey&, const HotKey&) = default;
};

/// Why a key must not be taken from all programs, as a sentence; empty if it may. `types` says whether the
/// key types a character.
std::string RefusalOf(const HotKey& key, bool types);

}  // namespace snip
