#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace snip {

struct FontProperty {
  std::string Name;
  double Size = 0.0;  ///< In points.
  bool Bold = false;
  bool Italic = false;
  bool Underline = false;
  bool Strikethrough = false;
  std::uint8_t Charset = 1;  ///< The platform's number of a character set; 1 leaves the choice to the system.
  friend bool operator==(const FontProperty&, const FontProperty&) = default;
};

/// A colour, or a reference to a system colour (highest bit set).
struct ColorProperty {
  std::uint32_t value = 0;
  friend bool operator==(const ColorProperty&, const ColorProperty&) = default;
};

/// A picture, by the file that it is loaded from; no picture when the path is empty.
struct PictureProperty {
  std::string file;
  friend bool operator==(const PictureProperty&, const PictureProperty&) = default;
};

using PropertyValue = std::variant<bool, std::int16_t, ColorProperty, FontProperty, PictureProperty>;

/// Where a control keeps its design-time properties between two runs of its container.
class PropertyBag {
 public:
  virtual ~PropertyBag() = default;

  /// The stored value, or `defaultValue` when there is none of its type under this name.
  virtual PropertyValue Read(std::string_view name, const PropertyValue& defaultValue) const = 0;

  /// A value that is the default need not be stored.
  virtual void Write(std::string_view name, const PropertyValue& value,
                     const PropertyValue& defaultValue) = 0;
};

}  // namespace snip
