#pragma once

#include <cmath>

#include "platform/Geometry.h"

namespace snip {

/// A twip is 1/1440 inch: 15 to the pixel at 96 dpi, 10 at 144 dpi. Window layouts are kept in twips so that
/// they keep their size on every screen.
constexpr double kTwipsPerInch = 1440.0;

/// How many twips one pixel of the screen is wide and high.
struct TwipsPerPixel {
  double x = 15.0;
  double y = 15.0;

  static TwipsPerPixel FromDpi(int dpiX, int dpiY) { return {kTwipsPerInch / dpiX, kTwipsPerInch / dpiY}; }

  int ToTwipsX(int pixels) const { return static_cast<int>(std::lround(pixels * x)); }
  int ToTwipsY(int pixels) const { return static_cast<int>(std::lround(pixels * y)); }
  int ToPixelsX(int twips) const { return static_cast<int>(std::lround(twips / x)); }
  int ToPixelsY(int twips) const { return static_cast<int>(std::lround(twips / y)); }

  Size ToTwips(Size pixels) const { return {ToTwipsX(pixels.width), ToTwipsY(pixels.height)}; }

  /// The edges are converted, not the sizes, so that neighbours in twips stay neighbours in pixels.
  Rect ToPixels(Rect twips) const {
    const int left = ToPixelsX(twips.left);
    const int top = ToPixelsY(twips.top);
    return {left, top, ToPixelsX(twips.right()) - left, ToPixelsY(twips.bottom()) - top};
  }
};

}  // namespace snip
