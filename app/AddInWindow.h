#pragma once

#include "ui/main/HostEnvironment.h"
#include "ui/main/frmAddIn.h"

namespace snip {

/// Who shows the main window for an environment.
class WindowUser {
 public:
  /// The window was hidden or unloaded, or serves another user now.
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
  /// False when the window has to stay until the user has answered whether to save; `user` is told of its
  /// end.
  bool Unload(const WindowUser& user);
  /// `user` comes to its end.
  void Forget(const WindowUser& user);

  // What the window does by itself, as when it is closed.
  void OnHidden();
  void OnUnloaded();

 private:
  frmAddIn& window_;
  WindowUser* user_ = nullptr;
};

}  // namespace snip
