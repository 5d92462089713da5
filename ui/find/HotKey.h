#pragma once

#include <cstdint>
#include <string>

namespace snip {

/// A key that works in every program, as the system's control for such keys has it.
struct HotKey {
  enum Held : std::uint8_t { kShift = 1, kControl = 2, kAlt = 4 };

  std::uint8_t key = 0;   ///< A virtual key; 0 for no key.
  std::uint8_t held = 0;  ///< Held keys, or-ed.

  bool empty() const { return key == 0; }
  /// As one number, to be stored.
  std::string Text() const { return std::to_string(held * 256 + key); }
  /// No key for any other text.
  static HotKey FromText(const std::string& text);
  friend bool operator==(const HotKey&, const HotKey&) = default;
};

/// Why a key cannot be taken from all programs, in a sentence; empty if it can. `types` says whether the
/// keyboard types a character by it.
std::string RefusalOf(const HotKey& key, bool types);

}  // namespace snip
