#pragma once

#include <windows.h>

namespace snip {

/// Turns off composition and the visual style for a window's frame, or restores the defaults.
/// With composition another process draws the frame, so that nothing painted on it would be seen; a visual
/// style has buttons of unknown sizes. Does nothing on systems that have neither.
void SetClassicFrame(HWND window, bool classic);

}  // namespace snip
