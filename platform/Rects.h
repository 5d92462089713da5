#pragma once

#include <windows.h>

#include "platform/Geometry.h"

namespace snip {

// Between the system's geometry and ours.

inline Point ToPoint(const POINT& point) {
  return {static_cast<int>(point.x), static_cast<int>(point.y)};
}
inline POINT ToPOINT(const Point& point) {
  return {point.x, point.y};
}

inline Rect ToRect(const RECT& rect) {
  return {static_cast<int>(rect.left), static_cast<int>(rect.top), static_cast<int>(rect.right - rect.left),
          static_cast<int>(rect.bottom - rect.top)};
}
inline RECT ToRECT(const Rect& rect) {
  return {rect.left, rect.top, rect.right(), rect.bottom()};
}

}  // namespace snip
