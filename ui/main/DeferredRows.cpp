#include "ui/main/DeferredRows.h"

#include <cstdint>
#include <cstring>

namespace snip {
namespace {

/// More than fit on any screen.
constexpr std::size_t kRowsAtOnce = 400;
/// They take 4 ms under Wine 8, for which input may have to wait.
constexpr std::size_t kRowsPerTick = 4000;
/// Long enough for the window to be painted, and to answer its first input.
constexpr UINT kTickMs = 55;
/// A number that no timer of the list box itself has.
constexpr UINT_PTR kTimer = 0x726F;

/// What the user does to the rows. A click on the scroll bar is one outside of the client area.
bool IsInput(UINT message) {
  return (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
         (message >= WM_NCLBUTTONDOWN && message <= WM_NCMBUTTONDBLCLK) ||
         (message > WM_MOUSEMOVE && message <= WM_MOUSELAST) || message == WM_VSCROLL;
}

}  // namespace

void DeferredRows::Fill(HWND listBox, std::span<const Snippet> snippets) {
  listBox_ = listBox;
  std::size_t size = 0;
  for (const Snippet& snippet : snippets) size += snippet.Name.size() + 1;
  names_.clear();
  names_.reserve(size);
  for (const Snippet& snippet : snippets) (names_ += snippet.Name.c_str()) += '\0';
  next_ = 0;
  // With redrawing off and the memory reserved at once, even the longest library fills quickly.
  Send(WM_SETREDRAW, FALSE);
  Send(LB_RESETCONTENT);
  Send(LB_INITSTORAGE, snippets.size(), static_cast<LPARAM>(size));
  // The thumb in the scroll bar of a visible list would shrink in steps.
  PutIn(IsWindowVisible(listBox_) != 0 ? SIZE_MAX : kRowsAtOnce);
  InvalidateRect(listBox_, nullptr, TRUE);
  if (names_.empty()) return;
  subclass_.Start(listBox_, [this](const Subclass::Message& message) { return OnMessage(message); });
}

LRESULT DeferredRows::Send(UINT message, WPARAM wParam, LPARAM lParam) const {
  const auto procedure = reinterpret_cast<WNDPROC>(GetClassLongPtrA(listBox_, GCLP_WNDPROC));
  return CallWindowProcA(procedure, listBox_, message, wParam, lParam);
}

void DeferredRows::PutIn(std::size_t count) {
  Send(WM_SETREDRAW, FALSE);
  for (; count > 0 && next_ < names_.size(); --count) {
    const char* const name = names_.c_str() + next_;
    // Advance first: a hook that is told of the new row may send a message that puts in the others.
    next_ += std::strlen(name) + 1;
    Send(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
  }
  Send(WM_SETREDRAW, TRUE);
  if (next_ < names_.size()) return;
  KillTimer(listBox_, kTimer);
  subclass_.Stop();
  names_ = std::string();  // with its memory
  next_ = 0;
}

/// Whether the list cannot answer the message with the rows that it has.
bool DeferredRows::Needs(const Subclass::Message& message) const {
  switch (message.id) {
    case LB_GETCURSEL:
    case LB_GETTOPINDEX:
    case LB_GETITEMHEIGHT:
      return false;
    case LB_SETCURSEL:
    case LB_GETITEMRECT:
    case LB_GETTEXT:
    case LB_GETTEXTLEN:
      return message.wParam >= static_cast<WPARAM>(Send(LB_GETCOUNT));
    default:
      return IsInput(message.id) || (message.id >= LB_ADDSTRING && message.id < LB_MSGMAX);
  }
}

LRESULT DeferredRows::OnMessage(const Subclass::Message& message) {
  if (message.id == WM_TIMER && message.wParam == kTimer) {
    PutIn(kRowsPerTick);
    return 0;
  }
  if (message.id == WM_PAINT) SetTimer(listBox_, kTimer, kTickMs, nullptr);
  if (Needs(message)) PutIn(SIZE_MAX);
  return message.PassOn();
}

}  // namespace snip
