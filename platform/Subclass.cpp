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
  std::shared_ptr<Link> next;  ///< The one that was there before; null for the last.
  bool stopped = false;

  /// Has it answer, or the next that has not stopped; behind the last, the window's own procedure.
  static LRESULT Answer(std::shared_ptr<Link> link, WNDPROC own, HWND window, UINT message, WPARAM wParam,
                        LPARAM lParam) {
    while (link && link->stopped) link = link->next;
    if (!link) return CallWindowProcA(own, window, message, wParam, lParam);
    if (message == WM_NCDESTROY) link->stopped = true;
    const Message told{window, message, wParam, lParam, link->stopped, *link, own};
    return Guarded(LRESULT{0}, [&] { return link->handler(told); });
  }
};

/// Those of one window, which owns it.
struct Subclass::Chain {
  WNDPROC own = nullptr;
  std::shared_ptr<Link> first;  ///< The latest; null when none is left, but a procedure in front of them is.
};

LRESULT Subclass::Message::PassOn() const {
  return Link::Answer(link.next, own, window, id, wParam, lParam);
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
  link->next = std::exchange(Of(window)->first, link);
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
  return Of(window_)->own;
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
  if (Of(window) == nullptr) return DefWindowProcA(window, message, wParam, lParam);
  const auto [own, first] = *Of(window);
  if (message == WM_NCDESTROY) End(window);
  return Link::Answer(first, own, window, message, wParam, lParam);
}

}  // namespace snip
