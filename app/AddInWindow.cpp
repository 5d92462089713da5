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

void AddInWindow::Unload(const WindowUser& user) {
  if (user_ != &user) return;
  user_ = nullptr;
  window_.Unload();
}

void AddInWindow::OnHidden() {
  if (user_ != nullptr) user_->OnHidden();
}

}  // namespace snip
