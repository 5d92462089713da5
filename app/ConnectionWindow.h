#pragma once

#include <windows.h>

#include "platform/Handle.h"
#include "platform/Window.h"

namespace snip {

/// The invisible window of a connection. It puts work off until the call of the environment has returned that
/// asked for it, and notices, also after a disconnection, when the environment's process has ended without a
/// word.
class ConnectionWindow : public Window {
 public:
  class Owner {
   public:
    virtual void ShowMainWindow() = 0;
    // These may delete the window.
    virtual void UnloadMainWindow() = 0;
    /// Asks the environment, while it is connected, for its window, and calls `WatchProcessOf`.
    virtual void WatchHost() = 0;
    virtual void HostIsGone() = 0;
    /// Asks the environment, while it is connected, for a sign of life; throws `HostError`. Used when its
    /// process cannot be watched.
    virtual void PingHost() = 0;

   protected:
    ~Owner() = default;
  };

  explicit ConnectionWindow(Owner& owner);
  ~ConnectionWindow() override;

  /// Watches the process that a window belongs to. Without a window, or the right to wait for its process,
  /// the environment is asked for signs of life instead, and each time for its window once more.
  void WatchProcessOf(HWND hostWindow);

  void PostShow();
  void PostWatch();
  void PostUnload();
  /// Finds out whether the environment is gone, as a call seems to have found; has the owner told when it is.
  bool FindGone();

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  /// Gives a process that is just ending `patienceMs` for it. This may be deleted during the wait.
  bool HostGone(DWORD patienceMs) const;

  Owner& owner_;
  UniqueKernelObject process_;
};

}  // namespace snip
