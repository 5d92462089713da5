#pragma once

#include <algorithm>
#include <memory>
#include <string_view>
#include <vector>

#include "tests/unit/WesternLetters.h"
#include "ui/commandbar/CommandBarButtons.h"

namespace snip::test {

/// A picture of its own. Nothing ever looks into it, so that any object will do.
inline PictureRef SomePicture() {
  const auto owner = std::make_shared<int>(0);
  return {owner, reinterpret_cast<const Picture*>(owner.get())};
}

inline LetterCase WesternLetterCase() {
  const auto lower = [letters = WesternLetters()](char c) {
    return letters.lower[static_cast<unsigned char>(c)];
  };
  return {lower, [lower](std::string_view a, std::string_view b) {
            return std::ranges::equal(a, b, {}, lower, lower);
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
