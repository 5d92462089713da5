#include "ui/find/HotKey.h"

#include <algorithm>
#include <string_view>

#include "settings/SettingsText.h"

namespace snip {
namespace {

// Virtual keys, as the platform numbers them.
constexpr std::uint8_t kTab = 0x09;
constexpr std::uint8_t kEscape = 0x1B;
constexpr std::uint8_t kSpace = 0x20;
constexpr std::uint8_t kDelete = 0x2E;
constexpr std::uint8_t kF1 = 0x70;
constexpr std::uint8_t kF4 = 0x73;
constexpr std::uint8_t kF12 = 0x7B;
constexpr std::uint8_t kF24 = 0x87;

bool IsLetterOrDigit(std::uint8_t key) {
  return (key >= '0' && key <= '9') || (key >= 'A' && key <= 'Z');
}

bool WindowsNeeds(const HotKey& key) {
  const bool alt = (key.held & HotKey::kAlt) != 0;
  const bool control = (key.held & HotKey::kControl) != 0;
  if (alt && (key.key == kTab || key.key == kEscape || key.key == kSpace || key.key == kF4)) return true;
  return control && (key.key == kEscape || (alt && key.key == kDelete));
}

}  // namespace

HotKey HotKey::FromText(const std::string& text) {
  constexpr int most = (kShift | kControl | kAlt) * 256 + 255;
  const double number = Val(text);
  const int whole = number >= 1 && number <= most ? static_cast<int>(number) : 0;
  const HotKey key{static_cast<std::uint8_t>(whole % 256), static_cast<std::uint8_t>(whole / 256)};
  return key.Text() == text && !key.empty() ? key : HotKey{};
}

std::string RefusalOf(const HotKey& key, bool types) {
  if (key.empty()) return {};
  if (key.key == kF12) return "Windows keeps F12 for debuggers.";
  if (WindowsNeeds(key)) return "Windows needs this key itself.";
  const bool isFunctionKey = key.key >= kF1 && key.key <= kF24;
  const int held = key.held & (HotKey::kControl | HotKey::kAlt);
  if (held == 0) {
    return isFunctionKey ? "Programs use function keys: hold Ctrl or Alt as well."
                         : "Without Ctrl or Alt the key could not be typed any more.";
  }
  if (types) return "Your keyboard types a character with this key: Ctrl+Alt is AltGr.";
  if (held == HotKey::kAlt && IsLetterOrDigit(key.key)) return "Alt with a letter or digit opens menus.";
  if (key.held == HotKey::kControl && IsLetterOrDigit(key.key)) {
    return "Most programs use Ctrl with a letter or digit: hold Shift or Alt as well.";
  }
  return {};
}

}  // namespace snip
