#pragma once

#include <cstdint>

#include "platform/Geometry.h"

namespace snip {

/// The mouse buttons, to be added up where several are held.
namespace MouseButton {
constexpr std::int16_t kLeft = 1;
constexpr std::int16_t kRight = 2;
constexpr std::int16_t kMiddle = 4;
}  // namespace MouseButton

/// The arguments of mouse events, in the host's numbers.
struct MouseState {
  std::int16_t Button = 0;  ///< A MouseButton; in a move the sum of those that are held.
  std::int16_t Shift = 0;   ///< 1 Shift, 2 Ctrl, 4 Alt, added up.
  Point at;                 ///< Client pixels.
  friend bool operator==(const MouseState&, const MouseState&) = default;
};

}  // namespace snip
