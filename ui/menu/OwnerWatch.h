#pragma once

#include <windows.h>

#include <functional>
#include <memory>

namespace snip {

/// Sees the messages of another window of the thread, after that window has handled them, for as long as it
/// watches and the window lives.
class OwnerWatch {
 public:
  /// May do anything, the end of the watch included.
  using Watcher = std::function<void(UINT message, WPARAM wParam)>;

  OwnerWatch() = default;
  ~OwnerWatch() { Stop(); }
  OwnerWatch(const OwnerWatch&) = delete;
  OwnerWatch& operator=(const OwnerWatch&) = delete;

  /// Instead of the window watched so far. A null window is none.
  void Start(HWND window, Watcher watcher);
  void Stop();

 private:
  static LRESULT CALLBACK SubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                       DWORD_PTR self);

  HWND window_ = nullptr;
  std::shared_ptr<const Watcher> watcher_;
};

}  // namespace snip
