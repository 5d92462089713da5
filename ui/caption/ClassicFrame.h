#pragma once

#include <windows.h>

namespace snip {

/// Has the system draw a window's frame itself, without composition and visual style, or as usual again.
///
/// With composition the frame is not drawn by the process that has the window, so that nothing painted on it
/// would be seen; a visual style has buttons of unknown sizes. Systems that have neither are left alone.
void SetClassicFrame(HWND window, bool classic);

}  // namespace snip
