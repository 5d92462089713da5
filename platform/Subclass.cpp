#include "platform/Subclass.h"

#include <utility>

#include "platform/Guarded.h"

namespace snip {
namespace {

WNDPROC ProcedureOf(HWND window) {
  return reinterpret_cast<WNDPROC>(GetWindowLongPtrA(window, GWLP_WNDPROC));
}

WNDPROC Replace(HWND window, WNDPROC procedure) {
  return reinterpret_cast<WNDPROC>(
      SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

}  // namespace

/// After its end it still leads to those behind it, for the message that it is handling.
struct Subclass::Link {
  Handler handler;
  WNDPROC own = nullptr;       ///< The window's, behind the last.
  std::shared_ptr<Link> next;  ///< The one that was there before; null for the last.
  bool stopped = false;

  LRESULT Answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCDESTROY) stopped = true;
    return Guarded(LRESULT{0}, [&] { return handler({window, message, wParam, lParam, stopped, *this}); });
  }
};

/// Those of one window, which owns it.
struct Subclass::Chain {
  WNDPROC own = nullptr;
  std::shared_ptr<Link> first;  ///< The latest; null when none is left, but a procedure in front of them is.
};

LRESULT Subclass::Message::PassOn() const {
  std::shared_ptr<Link> next = link.next;
  while (next && next->stopped) next = next->next;
  return next ? next->Answer(window, id, wParam, lParam)
              : CallWindowProcA(link.own, window, id, wParam, lParam);
}

bool Subclass::Start(HWND window, Handler handler) {
  Stop();
  if (GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId()) return false;
  auto link = std::make_shared<Link>();
  link->handler = std::move(handler);
  if (Of(window) == nullptr) {
    Bind(window, new Chain);
    // The window owns it, as a number, which the analyzer does not see.
    Of(window)->own = Replace(window, &Procedure);  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
  }
  Chain& chain = *Of(window);
  link->own = chain.own;
  link->next = std::exchange(chain.first, link);
  link_ = std::move(link);
  window_ = window;
  return true;
}

void Subclass::Stop() {
  const std::shared_ptr<Link> link = std::exchange(link_, nullptr);
  if (!link || std::exchange(link->stopped, true)) return;
  Chain* const chain = Of(window_);
  if (chain == nullptr) return;  // the window is gone
  std::shared_ptr<Link>* place = &chain->first;
  while (*place && *place != link) place = &(*place)->next;
  if (*place) *place = link->next;
  // A procedure in front, put there later, goes on calling ours, and would be lost with it.
  if (chain->first || ProcedureOf(window_) != &Procedure) return;
  End(window_);
}

WNDPROC Subclass::OriginalProcedure() const {
  return link_->own;
}

Subclass::Chain* Subclass::Of(HWND window) {
  return reinterpret_cast<Chain*>(GetWindowLongPtrA(window, GWLP_USERDATA));
}

void Subclass::End(HWND window) {
  const std::unique_ptr<Chain> chain(Of(window));
  if (ProcedureOf(window) == &Procedure) Replace(window, chain->own);
  Bind(window, nullptr);
}

void Subclass::Bind(HWND window, const Chain* chain) {
  SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(chain));
}

LRESULT CALLBACK Subclass::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const Chain* const chain = Of(window);
  if (chain == nullptr) return DefWindowProcA(window, message, wParam, lParam);
  const WNDPROC own = chain->own;
  const std::shared_ptr<Link> first = chain->first;
  if (message == WM_NCDESTROY) End(window);
  return first ? first->Answer(window, message, wParam, lParam)
               : CallWindowProcA(own, window, message, wParam, lParam);
}

}  // namespace snip
