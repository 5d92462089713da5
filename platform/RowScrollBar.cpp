#include "platform/RowScrollBar.h"

#include <algorithm>

namespace snip {

void RowScrollBar::Show(HWND window, int top, int inSight, int rows) {
  SCROLLINFO bar{};
  bar.cbSize = sizeof bar;
  bar.fMask = SIF_ALL | SIF_DISABLENOSCROLL;
  bar.nMax = std::max(0, rows - 1);
  bar.nPage = static_cast<UINT>(inSight);
  bar.nPos = top;
  SetScrollInfo(window, SB_VERT, &bar, TRUE);
}

std::optional<int> RowScrollBar::Wanted(HWND window, UINT message, WPARAM wParam) {
  SCROLLINFO bar{};
  bar.cbSize = sizeof bar;
  bar.fMask = SIF_ALL;
  if (message == WM_MOUSEWHEEL) {
    constexpr int rowsPerNotch = 3;
    wheel_ += GET_WHEEL_DELTA_WPARAM(wParam) * rowsPerNotch;
    const int rows = wheel_ / WHEEL_DELTA;
    wheel_ -= rows * WHEEL_DELTA;
    GetScrollInfo(window, SB_VERT, &bar);
    return bar.nPos - rows;
  }
  if (message != WM_VSCROLL) return std::nullopt;
  GetScrollInfo(window, SB_VERT, &bar);
  const int inSight = static_cast<int>(bar.nPage);
  switch (LOWORD(wParam)) {
    case SB_LINEUP:
      return bar.nPos - 1;
    case SB_LINEDOWN:
      return bar.nPos + 1;
    case SB_PAGEUP:
      return bar.nPos - inSight;
    case SB_PAGEDOWN:
      return bar.nPos + inSight;
    case SB_TOP:
      return 0;
    case SB_BOTTOM:
      return bar.nMax;
    case SB_THUMBTRACK:
      return bar.nTrackPos;
    default:
      return bar.nPos;
  }
}

}  // namespace snip
