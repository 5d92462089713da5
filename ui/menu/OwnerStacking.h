#pragma once

#include <windows.h>

namespace snip {

// The owner and the z-order of a menu's window. The system never activates a window with the style of a child
// window, but it hides and shows only pop-up windows along with their owner. So a docked menu has the style
// of a child window, and a torn-off one that of a pop-up window.

void MakeUnowned(HWND menu);
void MakeOwned(HWND menu, HWND owner);

void MakeTopmost(HWND menu);
void DropTopmost(HWND menu);

/// Puts a torn-off menu in front of its owner, and makes it topmost if its owner is. Wine 8 does
/// not raise owned windows along with their owner.
void KeepAboveOwner(HWND menu, HWND owner);

/// Puts a torn-off menu in front of all windows that are not topmost.
void BringToFront(HWND menu);

}  // namespace snip
