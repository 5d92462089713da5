#include "ui/commandbar/CommandBarProperties.h"

namespace snip {
namespace {

/// Calls `visit(name, member)` for every stored property, in the order in which they are stored.
template <typename Visit>
void ForEachProperty(Visit visit) {
  visit(BarProperty::kEnabled, &CommandBarProperties::Enabled);
  visit(BarProperty::kFont, &CommandBarProperties::Font);
  visit(BarProperty::kBorderStyle, &CommandBarProperties::BorderStyle);
  visit(BarProperty::kMaskColor, &CommandBarProperties::MaskColor);
  visit(BarProperty::kDockable, &CommandBarProperties::Dockable);
  visit(BarProperty::kSoundEffects, &CommandBarProperties::SoundEffects);
  visit(BarProperty::kMouseIcon, &CommandBarProperties::MouseIcon);
  visit(BarProperty::kMousePointer, &CommandBarProperties::MousePointer);
  visit(BarProperty::kOLEDropMode, &CommandBarProperties::OLEDropMode);
}

template <typename Value>
void ReadInto(Value& value, const PropertyBag& bag, const char* name) {
  const PropertyValue stored = bag.Read(name, value);
  if (const auto* typed = std::get_if<Value>(&stored)) value = *typed;
}

}  // namespace

CommandBarProperties CommandBarProperties::Initial(const FontProperty& ambientFont) {
  CommandBarProperties properties;
  properties.Font = ambientFont;
  return properties;
}

CommandBarProperties CommandBarProperties::Read(const PropertyBag& bag, const FontProperty& ambientFont) {
  CommandBarProperties properties = Initial(ambientFont);
  ForEachProperty([&](const char* name, auto member) { ReadInto(properties.*member, bag, name); });
  return properties;
}

void CommandBarProperties::Write(PropertyBag& bag, const FontProperty& ambientFont) const {
  const CommandBarProperties initial = Initial(ambientFont);
  ForEachProperty([&](const char* name, auto member) { bag.Write(name, this->*member, initial.*member); });
}

}  // namespace snip
