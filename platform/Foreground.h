#pragma once

#include <windows.h>

namespace snip {

/// Gives a window the foreground, also when another program has it that does not know to pass it on: the
/// environment does when its menu is used. Sharing its input state for a moment makes this process one that
/// may take it.
void TakeForeground(HWND window);

}  // namespace snip
