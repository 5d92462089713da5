#include "ui/main/TipPlacement.h"

#include <algorithm>

namespace snip {
namespace {

constexpr int kBelowPointer = 20;
/// Room above and below the text, the frame included.
constexpr int kVerticalMargin = 1;

}  // namespace

Rect PlaceTip(const TipRequest& request) {
  Rect place{request.x != 0 ? request.x : request.pointer.x,
             request.y != 0 ? request.y : request.pointer.y + kBelowPointer, request.text.width,
             request.text.height + 2 * kVerticalMargin};
  if (place.right() > request.screenWidth) place.left = std::max(0, request.screenWidth - place.width);
  return place;
}

}  // namespace snip
