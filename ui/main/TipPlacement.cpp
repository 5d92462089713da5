#include "ui/main/TipPlacement.h"

#include <algorithm>

namespace snip {
namespace {

constexpr int kBelowPointer = 20;
/// Room above and below the text, the frame included: as far as a tip over a list begins above the text
/// there.
constexpr int kVerticalMargin = 2;

}  // namespace

Rect PlaceTip(const TipRequest& request) {
  Rect place{request.x.value_or(request.pointer.x), request.y.value_or(request.pointer.y + kBelowPointer),
             request.text.width, request.text.height + 2 * kVerticalMargin};
  const Rect& screen = request.screen;
  if (place.right() > screen.right()) place.left = std::max(screen.left, screen.right() - place.width);
  return place;
}

}  // namespace snip
