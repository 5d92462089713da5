#pragma once

#include "platform/Geometry.h"

namespace snip {

/// What decides where a tip goes; screen pixels.
struct TipRequest {
  int x = 0;  ///< Wanted left edge; 0 for the pointer's x.
  int y = 0;  ///< Wanted top edge; 0 for a place below the pointer.
  Point pointer;
  Size text;    ///< Size of the text with a blank before and behind it.
  Rect screen;  ///< Of the several that there may be, the one that it comes up on.
};

/// A tip that would leave the screen on the right is pushed left, but never past the left edge.
Rect PlaceTip(const TipRequest& request);

}  // namespace snip
