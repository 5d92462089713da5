#include "ui/menu/OwnerStacking.h"

namespace snip {
namespace {

void Put(HWND menu, HWND behind) {
  SetWindowPos(menu, behind, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void ChangeStyle(HWND menu, DWORD without, DWORD with) {
  const auto style = static_cast<DWORD>(GetWindowLongA(menu, GWL_STYLE));
  SetWindowLongA(menu, GWL_STYLE, static_cast<LONG>((style & ~without) | with));
}

bool IsTopmost(HWND window) {
  return (GetWindowLongA(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
}

}  // namespace

void MakeUnowned(HWND menu) {
  SetWindowLongPtrA(menu, GWLP_HWNDPARENT, 0);
  ChangeStyle(menu, WS_POPUP, WS_CHILD);
}

void MakeOwned(HWND menu, HWND owner) {
  // Before it is owned, because Wine 8 keeps an owned window topmost while another window of the same owner,
  // such as a tip, is topmost.
  DropTopmost(menu);
  ChangeStyle(menu, WS_CHILD, WS_POPUP);
  SetWindowLongPtrA(menu, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner));
}

void MakeTopmost(HWND menu) {
  Put(menu, HWND_TOPMOST);
}

void DropTopmost(HWND menu) {
  Put(menu, HWND_NOTOPMOST);
}

void KeepAboveOwner(HWND menu, HWND owner) {
  if (IsTopmost(owner) != IsTopmost(menu)) {
    Put(menu, IsTopmost(owner) ? HWND_TOPMOST : HWND_NOTOPMOST);
    return;
  }
  for (HWND above = owner; above != nullptr; above = GetWindow(above, GW_HWNDPREV)) {
    if (above == menu) return;
  }
  BringToFront(menu);
}

void BringToFront(HWND menu) {
  Put(menu, HWND_TOP);
}

}  // namespace snip
