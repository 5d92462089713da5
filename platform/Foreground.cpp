#include "platform/Foreground.h"

namespace snip {

void TakeForeground(HWND window) {
  if (IsIconic(window) != 0) ShowWindow(window, SW_RESTORE);
  if (GetForegroundWindow() == window) return;
  if (SetForegroundWindow(window) != 0 && GetForegroundWindow() == window) return;
  const HWND foreground = GetForegroundWindow();
  const DWORD other = foreground != nullptr ? GetWindowThreadProcessId(foreground, nullptr) : 0;
  const DWORD own = GetCurrentThreadId();
  const bool attached = other != 0 && other != own && AttachThreadInput(own, other, TRUE) != 0;
  BringWindowToTop(window);
  SetForegroundWindow(window);
  if (attached) AttachThreadInput(own, other, FALSE);
}

}  // namespace snip
