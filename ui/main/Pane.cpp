#include "ui/main/Pane.h"

namespace snip {

bool Pane::CreateIn(HWND parent) {
  return Create({.className = "SnipstorePane",
                 .style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN,
                 .exStyle = WS_EX_CONTROLPARENT,
                 .place = {},
                 .parent = parent});
}

LRESULT Pane::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
    case WM_NOTIFY:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
      return SendMessageA(GetParent(hWnd()), message, wParam, lParam);
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
