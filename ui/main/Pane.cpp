#include "ui/main/Pane.h"

#include <utility>

#include "platform/Handle.h"

namespace snip {

bool Pane::CreateIn(HWND parent, const char* name, std::function<void(HDC dc)> paint) {
  paint_ = std::move(paint);
  return Create({.className = "SnipstorePane",
                 .title = name,
                 .style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                 .exStyle = WS_EX_CONTROLPARENT,
                 .place = {},
                 .parent = parent});
}

LRESULT Pane::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CONTEXTMENU:  // Wine 8's default would replace the control in wParam by the pane
    case WM_COMMAND:
    case WM_NOTIFY:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORSTATIC:
      return SendMessageA(GetParent(hWnd()), message, wParam, lParam);
    case WM_PAINT:
      if (paint_) {
        const PaintDC dc(hWnd());
        paint_(dc.get());
        return 0;
      }
      return Default(message, wParam, lParam);
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
