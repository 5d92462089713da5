#pragma once

#include <algorithm>
#include <memory>
#include <string_view>
#include <vector>

#include "ui/commandbar/CommandBarButtons.h"

namespace snip::test {

/// A picture of its own. Nothing ever looks into it, so that any object will do.
inline PictureRef SomePicture() {
  const auto owner = std::make_shared<int>(0);
  return {owner, reinterpret_cast<const Picture*>(owner.get())};
}

/// Letter case as in the code page 1252.
inline LetterCase WesternLetterCase() {
  const auto lower = [](char c) {
    const auto code = static_cast<unsigned char>(c);
    const bool capital = (code >= 'A' && code <= 'Z') || (code >= 0xC0 && code <= 0xDE && code != 0xD7);
    return capital ? static_cast<char>(code + 32) : c;
  };
  return {lower, [lower](std::string_view a, std::string_view b) {
            return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                              [&](char x, char y) { return lower(x) == lower(y); });
          }};
}

/// Every character is 7 pixels wide.
inline BarMetrics Metrics(int scaleHeight = 26, bool dockable = false) {
  return {scaleHeight, dockable, [](std::string_view text) { return static_cast<int>(text.size()) * 7; }};
}

/// A bar whose buttons all show a picture only, and so are 22 pixels wide each: button i takes the columns
/// 3 + 22 * i to 24 + 22 * i, drop-down buttons 8 more.
inline CommandBarButtons BarOf(const std::vector<ButtonType>& types) {
  CommandBarButtons buttons(WesternLetterCase());
  for (const ButtonType type : types) {
    buttons.Add({.Picture = SomePicture(),
                 .PictureSize = {16, 16},
                 .ButtonType = type,
                 .DisplayType = DisplayType::Picture},
                Metrics());
  }
  return buttons;
}

}  // namespace snip::test
