#include "app/AddInWindow.h"

#include <utility>

namespace snip {

bool AddInWindow::Show(WindowUser& user, HostEnvironment& host) {
  WindowUser* const previous = std::exchange(user_, &user);
  if (previous != nullptr && previous != &user) previous->OnHidden();
  // It may have been unloaded again while it told the user something.
  return window_.Show(&host) && window_.hWnd() != nullptr;
}

void AddInWindow::Hide(const WindowUser& user) {
  if (user_ == &user) window_.Hide();
}

bool AddInWindow::Unload(const WindowUser& user) {
  if (user_ == &user) window_.Unload();
  return user_ != &user || window_.hWnd() == nullptr;
}

void AddInWindow::Forget(const WindowUser& user) {
  if (user_ == &user) user_ = nullptr;
}

void AddInWindow::OnHidden() {
  if (user_ != nullptr) user_->OnHidden();
}

void AddInWindow::OnUnloaded() {
  if (WindowUser* const user = std::exchange(user_, nullptr)) user->OnHidden();
}

}  // namespace snip
