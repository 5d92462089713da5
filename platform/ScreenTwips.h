#pragma once

#include "platform/Geometry.h"
#include "platform/Twips.h"

namespace snip {

/// The screen's real twips per pixel. They stay the same while the process runs, which is system-DPI aware.
TwipsPerPixel ScreenTwips();

/// The area, in pixels, of the screen that a point is on, or of the nearest one.
Rect ScreenAt(Point point);

}  // namespace snip
