#include "platform/MouseMessage.h"

namespace snip {

std::int16_t ButtonOf(UINT message) {
  switch (message) {
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
      return MouseButton::kRight;
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
      return MouseButton::kMiddle;
    default:
      return MouseButton::kLeft;
  }
}

std::int16_t HeldButtons(WPARAM keys) {
  return static_cast<std::int16_t>(((keys & MK_LBUTTON) != 0 ? MouseButton::kLeft : 0) |
                                   ((keys & MK_RBUTTON) != 0 ? MouseButton::kRight : 0) |
                                   ((keys & MK_MBUTTON) != 0 ? MouseButton::kMiddle : 0));
}

std::int16_t HeldShiftKeys(WPARAM keys, bool alt) {
  return static_cast<std::int16_t>(((keys & MK_SHIFT) != 0 ? 1 : 0) | ((keys & MK_CONTROL) != 0 ? 2 : 0) |
                                   (alt ? 4 : 0));
}

}  // namespace snip
