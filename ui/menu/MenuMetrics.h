#pragma once

#include "platform/Twips.h"

namespace snip {

/// The measures of a menu that follow from its font and the screen; whole twips.
struct MenuMetrics {
  int ItemHeight = 0;      ///< Of an item that is not a separator.
  int SeparatorDelta = 0;  ///< By how much a separator is lower than another item.
  int TextLeft = 0;        ///< Where captions begin, right of the pictures.
  TwipsPerPixel twips;

  int ItemHeightPixels() const { return twips.ToPixelsY(ItemHeight); }
  int TextLeftPixels() const { return twips.ToPixelsX(TextLeft); }
  /// Converts pixels at 96 dpi, for which pictures are drawn, to pixels of this screen.
  int Scaled(int pixels) const { return twips.ToPixelsX(TwipsPerPixel{}.ToTwipsX(pixels)); }
};

/// The height of a separator's row, in twips.
constexpr int kSeparatorHeight = 90;

/// `textHeight` is the height of the text "Qq" in the menu's font, in pixels.
MenuMetrics ResetInfo(int textHeight, const TwipsPerPixel& twips);

}  // namespace snip
