#include "ui/editor/MouseSelection.h"

#include <richedit.h>
#include <windowsx.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

#include "ui/editor/RichEditText.h"

namespace snip {
namespace {

/// A number that the control does not give to its own timers.
constexpr UINT_PTR kScrollTimer = 0x534E4950;
constexpr UINT kScrollPause = 50;  ///< Milliseconds between two lines.

LRESULT CharacterAt(HWND control, POINT place) {
  POINTL at{place.x, place.y};
  return SendMessageA(control, EM_CHARFROMPOS, 0, reinterpret_cast<LPARAM>(&at));
}

}  // namespace

bool MouseSelection::Filter(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
  const POINT place{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  switch (message) {
    case WM_LBUTTONDBLCLK:
      doubleClick_ = Press{GetMessageTime(), place};
      return Start(control, SelectionUnit::Word, place);
    case WM_LBUTTONDOWN:
      return IsThirdPress(place) && Start(control, SelectionUnit::Line, place);
    case WM_MOUSEMOVE:
      if (!selection_) return false;
      ExtendTo(control, place);
      return true;
    case WM_TIMER:
      if (wParam != kScrollTimer) return false;
      ScrollToPointer(control);
      return true;
    case WM_LBUTTONUP:
      if (!selection_) return false;
      ReleaseCapture();
      return true;
    case WM_CAPTURECHANGED:
      Stop(control);
      return false;
    default:
      return false;
  }
}

/// The system tells double clicks alone.
bool MouseSelection::IsThirdPress(POINT place) const {
  if (!doubleClick_) return false;
  return static_cast<DWORD>(GetMessageTime() - doubleClick_->time) <= GetDoubleClickTime() &&
         std::abs(place.x - doubleClick_->place.x) <= GetSystemMetrics(SM_CXDOUBLECLK) / 2 &&
         std::abs(place.y - doubleClick_->place.y) <= GetSystemMetrics(SM_CYDOUBLECLK) / 2;
}

bool MouseSelection::Start(HWND control, SelectionUnit unit, POINT place) {
  const std::optional<std::u16string> text = RichEditText(control);
  const LRESULT pressed = CharacterAt(control, place);
  if (!text || pressed < 0) return true;
  SetCapture(control);
  selection_.emplace(RichEditColumns(*text), unit, static_cast<std::size_t>(pressed));
  SetTimer(control, kScrollTimer, kScrollPause, nullptr);
  ExtendTo(control, place);
  return true;
}

void MouseSelection::ExtendTo(HWND control, POINT place) const {
  RECT client{};
  GetClientRect(control, &client);
  const LRESULT reached = CharacterAt(control, {std::clamp(place.x, 0L, std::max(client.right - 1, 0L)),
                                                std::clamp(place.y, 0L, std::max(client.bottom - 1, 0L))});
  if (reached < 0) return;
  const UnitSelection::Range range = selection_->To(static_cast<std::size_t>(reached));
  SendMessageA(control, EM_SETSEL, range.anchor, static_cast<LPARAM>(range.active));
}

void MouseSelection::ScrollToPointer(HWND control) const {
  POINT pointer{};
  RECT client{};
  if (!selection_ || GetCursorPos(&pointer) == 0 || GetClientRect(control, &client) == 0) return;
  ScreenToClient(control, &pointer);
  const int lines = pointer.y < 0 ? -1 : pointer.y >= client.bottom ? 1 : 0;
  if (lines == 0) return;
  SendMessageA(control, EM_LINESCROLL, 0, lines);
  ExtendTo(control, pointer);
}

void MouseSelection::Stop(HWND control) {
  if (!std::exchange(selection_, std::nullopt)) return;
  KillTimer(control, kScrollTimer);
}

}  // namespace snip
