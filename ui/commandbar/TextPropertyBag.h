#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ui/commandbar/PropertyBag.h"

namespace snip {

/// Why a text is no property bag.
struct PropertyTextError {
  int line = 0;  ///< Counted from 1.
  std::string message;
  friend bool operator==(const PropertyTextError&, const PropertyTextError&) = default;
};

/// A property bag that a person can read and edit, one property a line:
///
///     Enabled = False
///     Font = "MS Sans Serif", 8.25, Bold, Charset 204
///     BorderStyle = 0
///     MaskColor = &HC0C0C0
///     MouseIcon = "C:\\Pictures\\hand.cur"
///
/// The form of a value says its type. After the size of a font any of Bold, Italic, Underline, Strikethrough
/// and Charset with a number may stand, in any order. In quotes, \" stands for a quotation mark, \\ for a
/// backslash, \r, \n and \t for the characters of these names, and \x with two hexadecimal digits for any
/// byte.
///
/// Names and words are the same in any letter case. Blanks around names, values and commas, and lines that
/// are blank, mean nothing; everything else that is not as above is an error. A line may end with CR LF or
/// LF. Properties whose name nobody asks for are kept, so that a text of a later version loses nothing here.
class TextPropertyBag : public PropertyBag {
 public:
  TextPropertyBag() = default;
  /// A property that is among the `known` ones must be of the type that it has there.
  static std::variant<TextPropertyBag, PropertyTextError> Parse(std::string_view text,
                                                                std::span<const NamedProperty> known);

  /// The properties in the order in which they were first written or parsed. Lines end with CR LF.
  std::string Text() const;

  PropertyValue Read(std::string_view name, const PropertyValue& defaultValue) const override;
  /// A default value is not stored, and takes away what was stored under the name. A name is a letter and
  /// then letters, digits and "_".
  void Write(std::string_view name, const PropertyValue& value, const PropertyValue& defaultValue) override;

 private:
  std::vector<NamedProperty> properties_;
};

}  // namespace snip
