#pragma once

#include <vector>

#include "ui/main/HostEnvironment.h"
#include "ui/main/frmAddIn.h"

namespace snip {

/// Who shows the main window for an environment.
class WindowUser {
 public:
  /// The window was hidden or unloaded.
  virtual void OnHidden() = 0;

 protected:
  ~WindowUser() = default;
};

/// The one main window, which serves the environment that showed it last; after that one's disconnection the
/// one that did so before.
class AddInWindow {
 public:
  explicit AddInWindow(frmAddIn& window) : window_(window) {}

  /// Shows the window for `user`, in front as far as the system lets it; `host` is null when no environment
  /// is connected. False when the window cannot be made.
  bool Show(WindowUser& user, HostEnvironment* host);
  /// Does nothing for another user than the one it serves.
  void Hide(const WindowUser& user);
  /// Unloads the window, unless others have shown it. False when it has to stay until the user has answered
  /// whether to save; `user` is told of its end.
  bool Unload(const WindowUser& user);
  /// `user` comes to its end.
  void Forget(const WindowUser& user);

  // What the window does by itself, as when it is closed.
  void OnHidden();
  void OnUnloaded();

 private:
  struct Service {
    WindowUser* user;
    HostEnvironment* host;
  };

  bool Serves(const WindowUser& user) const;
  std::vector<Service>::iterator Find(const WindowUser& user);

  frmAddIn& window_;
  std::vector<Service> services_;  ///< The last one is what it serves.
};

}  // namespace snip
