#include "ui/menu/MenuMetrics.h"

namespace snip {
namespace {

/// Room above and below a caption, in twips.
constexpr int kAroundText = 120;
/// The width of the picture column, in pixels on every screen.
constexpr int kPictureColumn = 24;
/// Between that column and the caption, in twips.
constexpr int kTextGap = 15;

}  // namespace

MenuMetrics ResetInfo(int textHeight, const TwipsPerPixel& twips) {
  MenuMetrics metrics;
  metrics.twips = twips;
  metrics.ItemHeight = twips.ToTwipsY(textHeight) + kAroundText;
  metrics.SeparatorDelta = metrics.ItemHeight - kSeparatorHeight;
  metrics.TextLeft = twips.ToTwipsX(kPictureColumn) + kTextGap;
  return metrics;
}

}  // namespace snip
