#include "app/AddInWindow.h"

#include <windows.h>

#include <utility>

namespace snip {
namespace {

/// The environment has the foreground when its menu is used, and only it could pass that on, which it does
/// not know to do. Sharing its input state for a moment makes this process one that may take it.
void BringToFront(HWND window) {
  if (IsIconic(window) != 0) ShowWindow(window, SW_RESTORE);
  if (SetForegroundWindow(window) != 0 && GetForegroundWindow() == window) return;
  const HWND foreground = GetForegroundWindow();
  const DWORD other = foreground != nullptr ? GetWindowThreadProcessId(foreground, nullptr) : 0;
  const DWORD own = GetCurrentThreadId();
  const bool attached = other != 0 && other != own && AttachThreadInput(own, other, TRUE) != 0;
  BringWindowToTop(window);
  SetForegroundWindow(window);
  if (attached) AttachThreadInput(own, other, FALSE);
}

}  // namespace

bool AddInWindow::Show(WindowUser& user, HostEnvironment& host) {
  WindowUser* const previous = std::exchange(user_, &user);
  if (previous != nullptr && previous != &user) previous->OnHidden();
  if (!window_.Show(&host)) return false;
  // It may have been unloaded again while it told the user something.
  if (window_.hWnd() != nullptr) BringToFront(GetLastActivePopup(window_.hWnd()));
  return window_.hWnd() != nullptr;
}

void AddInWindow::Hide(const WindowUser& user) {
  if (user_ == &user) window_.Hide();
}

void AddInWindow::Unload(const WindowUser& user) {
  if (user_ != &user) return;
  user_ = nullptr;
  window_.Unload();
}

void AddInWindow::OnHidden() {
  if (user_ != nullptr) user_->OnHidden();
}

}  // namespace snip
