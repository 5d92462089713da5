#pragma once

#include "platform/Twips.h"

namespace snip {

/// The screen's real twips per pixel. They stay the same while the process runs, which is system-DPI aware.
TwipsPerPixel ScreenTwips();

}  // namespace snip
