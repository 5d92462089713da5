#pragma once

#include <windows.h>

#include <functional>

#include "platform/Handle.h"
#include "platform/Window.h"

namespace snip {

/// The invisible window of a connection. It puts work off until the call of the environment has returned that
/// asked for it, and notices when the environment's process has ended without a word.
class ConnectionWindow : public Window {
 public:
  struct Handlers {
    std::function<void()> show;
    std::function<void()> gone;
    /// Asks the environment for a sign of life; throws `HostError`. Used when its process cannot be watched.
    std::function<void()> ping;
  };

  explicit ConnectionWindow(Handlers handlers);
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
  static void Run(std::function<void()> handler);

  struct ProcessTraits {
    using Type = HANDLE;
    static Type Empty() { return nullptr; }
    static void Close(Type handle) { CloseHandle(handle); }
  };

  Handlers handlers_;
  UniqueHandle<ProcessTraits> process_;
};

}  // namespace snip
