#pragma once

#include "platform/Geometry.h"
#include "platform/Twips.h"

namespace snip {

/// The screen's real twips per pixel. They stay the same while the process runs, which is system-DPI aware.
TwipsPerPixel ScreenTwips();

/// The area, in pixels, of the screen that a point lies on, or is nearest to when it lies on none.
Rect ScreenAt(Point point);

}  // namespace snip
