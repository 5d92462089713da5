#pragma once

#include <windows.h>

#include <optional>

namespace snip {

/// Adds `kSystemMenu`, with its keys, to the window's system menu.
void ExtendSystemMenu(HWND window);

/// The command that a WM_SYSCOMMAND with that wParam asks for; nothing if it is one of the system's.
std::optional<int> SystemMenuCommand(WPARAM wParam);

}  // namespace snip
