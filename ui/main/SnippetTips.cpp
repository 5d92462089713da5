#include "ui/main/SnippetTips.h"

#include <algorithm>

namespace snip {
namespace {

/// A list box answers with the high word set for a point outside its entries.
constexpr std::int32_t kOutsideEntries = 0x10000;

constexpr int kBelowPointer = 20;
/// Room above and below the text, including the frame: a tip over a list begins that far above the entry's
/// text.
constexpr int kVerticalMargin = 2;

}  // namespace
Rect PlaceTip(const TipRequest& request) {
  Rect place{request.x.value_or(request.pointer.x), request.y.value_or(request.pointer.y + kBelowPointer),
             request.text.width, request.text.height + 2 * kVerticalMargin};
  const Rect& screen = request.screen;
  if (place.right() > screen.right()) place.left = std::max(screen.left, screen.right() - place.width);
  return place;
}

void SnippetTips::tTip_Timer() {
  const auto place = surroundings_.PlaceOfPointer();
  if (place == TipSurroundings::Place::Elsewhere || (surroundings_.TipVisible() && RowHasChanged())) {
    surroundings_.HideTip();
  }
  if (place != TipSurroundings::Place::List) return;  // over the tip itself it stays

  const std::int32_t entry = surroundings_.EntryAtPointer();
  if (entry == lastTipIndex_ && surroundings_.TipVisible()) return;
  lastTipIndex_ = entry;
  if (entry >= kOutsideEntries) {
    surroundings_.HideTip();
    return;
  }
  text_ = surroundings_.EntryText(entry);
  if (surroundings_.TextWidth(text_) <= surroundings_.ListWidth()) {
    surroundings_.HideTip();
    return;
  }
  topEntry_ = surroundings_.TopEntry();
  const int top = (entry - topEntry_) * surroundings_.EntryHeight() - 1;
  const Point corner = surroundings_.OnScreen(top);
  // Outside the entry by the tip's frame and margin, so that its text covers the entry's.
  surroundings_.ShowTip(text_, corner.x - 2, corner.y - 1);
}

/// Whether the list was scrolled or refilled beneath the tip, which then covers something else.
bool SnippetTips::RowHasChanged() const {
  return surroundings_.TopEntry() != topEntry_ || surroundings_.EntryText(lastTipIndex_) != text_;
}

}  // namespace snip
