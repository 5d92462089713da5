#include "ui/dialogs/FieldRows.h"

#include <algorithm>
#include <utility>

namespace snip {

bool FieldRows::CreateIn(HWND dialog, const Rect& place, int rowHeight, int rows) {
  rowHeight_ = rowHeight;
  rows_ = rows;
  const bool scrolls = rows * rowHeight > place.height;
  if (!Create({.className = "SnipstoreFieldRows",
               .style = WS_CHILD | WS_VISIBLE | (scrolls ? DWORD{WS_VSCROLL} : 0),
               .exStyle = WS_EX_CONTROLPARENT,
               .place = place,
               .parent = dialog})) {
    return false;
  }
  if (scrolls) RowScrollBar::Show(hWnd(), top_, RowsInSight(), rows_);
  return true;
}

void FieldRows::ScrollTo(int top) {
  top = std::clamp(top, 0, std::max(0, rows_ - RowsInSight()));
  const int before = std::exchange(top_, top);
  if (before == top) return;
  ScrollWindowEx(hWnd(), 0, (before - top) * rowHeight_, nullptr, nullptr, nullptr, nullptr,
                 SW_SCROLLCHILDREN | SW_INVALIDATE | SW_ERASE);
  RowScrollBar::Show(hWnd(), top_, RowsInSight(), rows_);
}

void FieldRows::Reveal(HWND control) {
  const int row = PlaceInParent(control).top / rowHeight_ + top_;
  ScrollTo(std::clamp(top_, row - RowsInSight() + 1, row));
}

LRESULT FieldRows::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_COMMAND) {
    const auto control = reinterpret_cast<HWND>(lParam);
    const HWND focus = GetFocus();
    if (control != nullptr && (focus == control || IsChild(control, focus) != 0)) Reveal(control);
    return SendMessageA(GetParent(hWnd()), message, wParam, lParam);
  }
  if (const auto top = scrollBar_.Wanted(hWnd(), message, wParam)) {
    ScrollTo(*top);
    return 0;
  }
  return Default(message, wParam, lParam);
}

}  // namespace snip
