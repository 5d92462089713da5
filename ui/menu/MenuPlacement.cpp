#include "ui/menu/MenuPlacement.h"

#include <cmath>

namespace snip {
namespace {

// Twips.
constexpr int kBesideItems = 240;
constexpr int kFrame = 120;
constexpr int kDockedDragBar = 165;
/// Drag bar and frame.
constexpr int kTornOffExtra = 435;
/// The height that a torn-off menu reserves for a separator. Its rows are where a docked menu has them, so
/// the rest is space below the last one.
constexpr int kTornOffSeparator = 120;

/// How many separators make the menu lower. One at the end does not: it has the height of an item, so that
/// there is space below its lines.
int LowRows(const MenuItems& items) {
  return items.SeparatorCount(items.iCount() - 1);
}

/// Converts a coordinate to whole pixels, towards 0. Half a twip is added, because rounding a pixel to whole
/// twips may have lost that much.
int CornerPixels(int twips, double twipsPerPixel) {
  return static_cast<int>((twips + std::copysign(0.5, twips)) / twipsPerPixel);
}

}  // namespace

Rect PlacePopup(const MenuItems& items, const MenuMetrics& metrics, const PopupRequest& request) {
  const bool atCursor = request.X == -1 && request.Y == -1;
  Rect place;
  place.left = atCursor ? metrics.twips.ToTwipsX(request.cursor.x) : request.X;
  place.top = atCursor ? metrics.twips.ToTwipsY(request.cursor.y) : request.Y;
  place.width = items.MaxWidth() + kBesideItems;
  place.height = metrics.ItemHeight * items.iCount() - metrics.SeparatorDelta * LowRows(items) + kFrame +
                 (request.AllowDetach ? kDockedDragBar : 0);
  const int right = metrics.twips.ToTwipsX(request.screen.right());
  const int bottom = metrics.twips.ToTwipsY(request.screen.bottom());
  if (place.right() > right) place.left = right - place.width;
  if (place.bottom() > bottom) place.top = bottom - place.height;
  return place;
}

int TornOffHeight(const MenuItems& items, const MenuMetrics& metrics) {
  return metrics.ItemHeight * items.iCount() + kTornOffExtra -
         (metrics.ItemHeight - kTornOffSeparator) * LowRows(items);
}

Unfolding Unfold(const Rect& place, const TwipsPerPixel& twips) {
  Unfolding unfolding;
  unfolding.corner = {CornerPixels(place.left, twips.x), CornerPixels(place.top, twips.y)};
  const double width = place.width / twips.x / Unfolding::kSteps;
  const double height = place.height / twips.y / Unfolding::kSteps;
  int step = 0;
  for (Size& size : unfolding.sizes) {
    ++step;
    size = {static_cast<int>(std::lround(step * width)), static_cast<int>(std::lround(step * height))};
  }
  return unfolding;
}

}  // namespace snip
