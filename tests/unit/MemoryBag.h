#pragma once

#include <map>
#include <string>
#include <utility>

#include "ui/commandbar/PropertyBag.h"

namespace snip::test {

/// Keeps what is written, each value with the default it was written with.
class MemoryBag : public PropertyBag {
 public:
  PropertyValue Read(std::string_view name, const PropertyValue& defaultValue) const override {
    const auto found = stored.find(std::string(name));
    return found != stored.end() ? found->second.first : defaultValue;
  }
  void Write(std::string_view name, const PropertyValue& value, const PropertyValue& defaultValue) override {
    stored[std::string(name)] = {value, defaultValue};
  }

  std::map<std::string, std::pair<PropertyValue, PropertyValue>> stored;
};

}  // namespace snip::test
