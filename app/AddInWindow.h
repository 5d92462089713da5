#pragma once

#include "ui/main/HostEnvironment.h"
#include "ui/main/frmAddIn.h"

namespace snip {

/// Who shows the main window for an environment.
class WindowUser {
 public:
  virtual void OnHidden() = 0;

 protected:
  ~WindowUser() = default;
};

/// The one main window, which serves the environment that showed it last.
class AddInWindow {
 public:
  explicit AddInWindow(frmAddIn& window) : window_(window) {}

  /// Shows the window for `user`, in front as far as the system lets it; a user that had it before is told
  /// that it is hidden. False when the window cannot be made.
  bool Show(WindowUser& user, HostEnvironment& host);
  // For another user than the one it serves these do nothing.
  void Hide(const WindowUser& user);
  void Unload(const WindowUser& user);

  /// The window was hidden by itself, as when it is closed.
  void OnHidden();

 private:
  frmAddIn& window_;
  WindowUser* user_ = nullptr;
};

}  // namespace snip
