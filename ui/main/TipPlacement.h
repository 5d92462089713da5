#pragma once

#include <optional>

#include "platform/Geometry.h"

namespace snip {

/// What decides where a tip goes; screen pixels.
struct TipRequest {
  std::optional<int> x;  ///< Wanted left edge; without one the pointer's x.
  std::optional<int> y;  ///< Wanted top edge; without one a place below the pointer.
  Point pointer;
  Size text;    ///< Size of the text with a blank before and behind it.
  Rect screen;  ///< Of the several that there may be, the one that it comes up on.
};

/// A tip that would leave the screen on the right is pushed left, but never past the left edge.
Rect PlaceTip(const TipRequest& request);

}  // namespace snip
