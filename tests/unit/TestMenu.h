#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ui/menu/MenuItems.h"
#include "ui/menu/MenuMetrics.h"

namespace snip::test {

/// Every character is 7 pixels wide.
inline int SevenPixels(std::string_view text) {
  return static_cast<int>(text.size()) * 7;
}

/// The measures at a screen resolution, with a font whose lines are 13 pixels high at 96 dpi.
inline MenuMetrics MetricsAt(int dpi) {
  return ResetInfo(13 * dpi / 96, TwipsPerPixel::FromDpi(dpi, dpi));
}

/// A menu with a letter for each item, in order: "i" an item, "d" a disabled one, "-" a separator.
inline MenuItems MenuOf(std::string_view kinds, const MenuMetrics& metrics = MetricsAt(96)) {
  MenuItems items;
  for (const char kind : kinds) {
    MenuItem item;
    item.Caption = kind == '-' ? "-" : "Item";
    item.Enabled = kind != 'd';
    items.Add(item, metrics, SevenPixels);
  }
  return items;
}

}  // namespace snip::test
