#pragma once

#include <windows.h>

namespace snip {

// Where a menu's window is among the others. The system never activates a window that looks like a child
// window, but it hides and shows only pop-up windows along with their owner. So a menu is the one while it is
// docked and the other when it is torn off.

void MakeUnowned(HWND menu);
void MakeOwned(HWND menu, HWND owner);

void MakeTopmost(HWND menu);
void DropTopmost(HWND menu);

/// Puts a torn-off menu in front of its owner, and among the topmost windows when the owner is. Wine 8 does
/// not raise owned windows along with their owner.
void KeepAboveOwner(HWND menu, HWND owner);

/// Puts a torn-off menu in front of all that are not topmost.
void BringToFront(HWND menu);

}  // namespace snip
