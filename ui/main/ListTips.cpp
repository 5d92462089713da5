#include "ui/main/ListTips.h"

#include "platform/Fonts.h"
#include "platform/Rects.h"
#include "platform/Win32Text.h"

namespace snip {

void ListTips::Attach(HWND pane, HWND list) {
  pane_ = pane;
  list_ = list;
  tip_.SetExtended(list);
}

void ListTips::TakeListFont() {
  tip_.SetFont(FontOf(list_));
  measured_.clear();
  measuredWidth_ = 0;
}

TipSurroundings::Place ListTips::PlaceOfPointer() {
  const bool tipShown = tip_.Visible();
  if (!tipShown && !look_.Needed(list_)) return Place::Elsewhere;  // as it is most of the time
  GetCursorPos(&pointer_);
  look_.Found(pointer_);
  if (LiesAt(list_, pointer_)) return Place::List;
  return tipShown && LiesAt(tip_.hWnd(), pointer_) ? Place::Tip : Place::Elsewhere;
}

std::int32_t ListTips::EntryAtPointer() const {
  POINT place = pointer_;
  ScreenToClient(list_, &place);
  return static_cast<std::int32_t>(SendMessageA(list_, LB_ITEMFROMPOINT, 0, MAKELPARAM(place.x, place.y)));
}

std::string ListTips::EntryText(std::int32_t entry) const {
  return ListBoxText(list_, entry);
}

Point ListTips::OnScreen(int y) const {
  POINT place{0, y};
  ClientToScreen(list_, &place);
  return ToPoint(place);
}

int ListTips::TopEntry() const {
  return static_cast<int>(SendMessageA(list_, LB_GETTOPINDEX, 0, 0));
}

int ListTips::EntryHeight() const {
  return static_cast<int>(SendMessageA(list_, LB_GETITEMHEIGHT, 0, 0));
}

int ListTips::TextWidth(const std::string& text) {
  if (text != measured_) {
    measured_ = text;
    measuredWidth_ = TextSize(FontOf(list_), text).width;
  }
  return measuredWidth_;
}

int ListTips::PaneWidth() const {
  return ClientSize(pane_).width;
}

}  // namespace snip
