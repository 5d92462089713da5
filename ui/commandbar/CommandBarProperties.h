#pragma once

#include <cstdint>

#include "ui/commandbar/PropertyBag.h"

namespace snip {

/// The names under which the properties are stored, and under which a bar tells its container that one was
/// changed. SoundEffects is a plain public field: the container is not told of its changes.
namespace BarProperty {
constexpr const char* kEnabled = "Enabled";
constexpr const char* kFont = "Font";
constexpr const char* kBorderStyle = "BorderStyle";
constexpr const char* kMaskColor = "MaskColor";
constexpr const char* kDockable = "Dockable";
constexpr const char* kSoundEffects = "SoundEffects";
constexpr const char* kMouseIcon = "MouseIcon";
constexpr const char* kMousePointer = "MousePointer";
constexpr const char* kOLEDropMode = "OLEDropMode";
}  // namespace BarProperty

/// The design-time properties of a bar. Buttons are not among them: the container adds those at run time.
struct CommandBarProperties {
  bool Enabled = true;
  FontProperty Font;
  std::int16_t BorderStyle = 1;
  ColorProperty MaskColor{0xC0C0C0};  ///< The transparent colour of button pictures: light grey.
  bool Dockable = false;              ///< Has a grip at its left and sizes its own width.
  bool SoundEffects = true;
  PictureProperty MouseIcon;
  std::int16_t MousePointer = 0;
  std::int16_t OLEDropMode = 0;

  /// Those of a new bar: its font is the container's.
  static CommandBarProperties Initial(const FontProperty& ambientFont);

  /// What is missing in the bag, or is of another type there, is as in a new bar.
  static CommandBarProperties Read(const PropertyBag& bag, const FontProperty& ambientFont);
  void Write(PropertyBag& bag, const FontProperty& ambientFont) const;

  friend bool operator==(const CommandBarProperties&, const CommandBarProperties&) = default;
};

}  // namespace snip
