#include "ui/menu/OwnerWatch.h"

#include <commctrl.h>

#include <utility>

namespace snip {

void OwnerWatch::Start(HWND window, Watcher watcher) {
  Stop();
  if (window == nullptr) return;
  watcher_ = std::make_shared<const Watcher>(std::move(watcher));
  if (SetWindowSubclass(window, &SubclassProc, reinterpret_cast<UINT_PTR>(this),
                        reinterpret_cast<DWORD_PTR>(this)) != FALSE) {
    window_ = window;
  }
}

void OwnerWatch::Stop() {
  if (const HWND window = std::exchange(window_, nullptr)) {
    RemoveWindowSubclass(window, &SubclassProc, reinterpret_cast<UINT_PTR>(this));
  }
  watcher_.reset();
}

LRESULT CALLBACK OwnerWatch::SubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR /*id*/, DWORD_PTR self) {
  auto* watch = reinterpret_cast<OwnerWatch*>(self);
  // The watch may end while the window handles the message.
  const std::weak_ptr<const Watcher> watcher = watch->watcher_;
  if (message == WM_NCDESTROY) watch->Stop();
  const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
  try {
    if (const auto stillThere = watcher.lock()) (*stillThere)(message, wParam);
  } catch (...) {
    // Must not unwind through the system's frames. The message itself has been handled.
  }
  return result;
}

}  // namespace snip
