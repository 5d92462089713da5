#include "platform/Subclass.h"

#include <commctrl.h>

#include <utility>

#include "platform/Guarded.h"

namespace snip {

LRESULT Subclass::Message::PassOn() const {
  return DefSubclassProc(window, id, wParam, lParam);
}

bool Subclass::Start(HWND window, Handler handler) {
  Stop();
  auto hook = std::make_shared<Hook>(Hook{std::move(handler)});
  const auto self = reinterpret_cast<UINT_PTR>(this);
  if (window == nullptr || SetWindowSubclass(window, &Procedure, self, self) == FALSE) return false;
  window_ = window;
  hook_ = std::move(hook);
  return true;
}

void Subclass::Stop() {
  const HWND window = std::exchange(window_, nullptr);
  if (window == nullptr) return;
  RemoveWindowSubclass(window, &Procedure, reinterpret_cast<UINT_PTR>(this));
  std::exchange(hook_, nullptr)->stopped = true;
}

LRESULT CALLBACK Subclass::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/,
                                     DWORD_PTR self) {
  auto* subclass = reinterpret_cast<Subclass*>(self);
  const std::shared_ptr<Hook> hook = subclass->hook_;
  if (message == WM_NCDESTROY) subclass->Stop();
  return Guarded(LRESULT{0}, [&] { return hook->handler({window, message, wParam, lParam, hook->stopped}); });
}

}  // namespace snip
