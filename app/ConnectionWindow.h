#pragma once

#include <windows.h>

#include "platform/Handle.h"
#include "platform/Window.h"

namespace snip {

/// The invisible window of a connection. It puts work off until the call of the environment has returned that
/// asked for it, and notices when the environment's process has ended without a word.
class ConnectionWindow : public Window {
 public:
  class Owner {
   public:
    virtual void ShowMainWindow() = 0;
    /// May delete the window.
    virtual void HostIsGone() = 0;
    /// Asks the environment for a sign of life; throws `HostError`. Used when its process cannot be watched.
    virtual void PingHost() = 0;

   protected:
    ~Owner() = default;
  };

  explicit ConnectionWindow(Owner& owner);
  ~ConnectionWindow() override;

  /// Watches the process that a window belongs to. Without a window, or the right to wait for its process,
  /// the environment is asked for signs of life instead.
  void WatchProcessOf(HWND hostWindow);

  void PostShow();
  void PostGone();

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  bool HostGone() const;

  struct ProcessTraits {
    using Type = HANDLE;
    static Type Empty() { return nullptr; }
    static void Close(Type handle) { CloseHandle(handle); }
  };

  Owner& owner_;
  UniqueHandle<ProcessTraits> process_;
};

}  // namespace snip
