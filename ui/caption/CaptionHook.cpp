#include "ui/caption/CaptionHook.h"

#include <utility>

#include "platform/Guarded.h"
#include "ui/caption/ClassicFrame.h"

namespace snip {
namespace {

/// The window's own procedure, while the hook is installed.
constexpr const char* kPreviousProperty = "OldMeProc";
/// The hook.
constexpr const char* kHookProperty = "BnCaptionHook";

/// The value of WM_NCPAINT's region that means the whole window.
constexpr WPARAM kWholeWindow = 1;

HICON IconOf(HWND window) {
  const auto own = reinterpret_cast<HICON>(SendMessageA(window, WM_GETICON, ICON_SMALL, 0));
  if (own != nullptr) return own;
  const auto small = reinterpret_cast<HICON>(GetClassLongPtrA(window, GCLP_HICONSM));
  return small != nullptr ? small : reinterpret_cast<HICON>(GetClassLongPtrA(window, GCLP_HICON));
}

/// The sizing cursor for a part of the frame; null for the parts whose cursors are left to the window.
const char* SizingCursor(int hitTest) {
  switch (hitTest) {
    case HTLEFT:
    case HTRIGHT:
      return IDC_SIZEWE;
    case HTTOP:
      return IDC_SIZENS;
    case HTTOPLEFT:
      return IDC_SIZENWSE;
    case HTTOPRIGHT:
      return IDC_SIZENESW;
    default:
      return nullptr;
  }
}

bool HasActiveCaption(HWND window) {
  WINDOWINFO info{};
  info.cbSize = sizeof info;
  return GetWindowInfo(window, &info) != 0 && (info.dwWindowStatus & WS_ACTIVECAPTION) != 0;
}

}  // namespace

void CaptionHook::Install(HWND window, CaptionPainter& painter) {
  Remove();
  if (Of(window) != nullptr) return;
  if (!subclass_.Start(window, [this](const Subclass::Message& message) { return HandleMessage(message); }))
    return;
  window_ = window;
  painter_ = &painter;
  active_ = HasActiveCaption(window);
  dialogActive_ = false;
  usesClassicFrame_ = false;  // a destroyed window needs no frame restored
  icon_.reset();
  SetPropA(window, kHookProperty, this);
  SetPropA(window, kPreviousProperty, reinterpret_cast<HANDLE>(subclass_.OriginalProcedure()));
  UseClassicFrame(painter.Enabled());
  ShareWithOwner(window, active_ || GetActiveWindow() == window);
}

void CaptionHook::Remove() {
  const HWND window = window_;
  Detach();
  if (window == nullptr) return;
  if (std::exchange(usesClassicFrame_, false)) SetClassicFrame(window, false);
}

void CaptionHook::Detach() {
  const HWND window = std::exchange(window_, nullptr);
  if (window == nullptr) return;
  subclass_.Stop();
  ShareWithOwner(window, false);
  RemovePropA(window, kHookProperty);
  RemovePropA(window, kPreviousProperty);
}

/// The owner of a dialog keeps its active title bar while the dialog has the focus.
void CaptionHook::ShareWithOwner(HWND window, bool active) {
  const HWND owner = GetWindow(window, GW_OWNER);
  CaptionHook* hook = owner == nullptr ? nullptr : Of(owner);
  if (hook == nullptr || active == std::exchange(hook->dialogActive_, active)) return;
  hook->PaintAgain();
}

CaptionHook* CaptionHook::Of(HWND window) {
  return static_cast<CaptionHook*>(GetPropA(window, kHookProperty));
}

// Passing a message on may remove or destroy the hook: afterwards check `message.stopped` before using
// members.
LRESULT CaptionHook::HandleMessage(const Subclass::Message& message) {
  switch (message.id) {
    case WM_NCDESTROY:
      Detach();
      break;
    case WM_SIZE: {
      const LRESULT result = message.PassOn();
      if (!message.stopped) SendMessageA(message.window, WM_NCPAINT, kWholeWindow, 0);
      return result;
    }
    case WM_NCACTIVATE:
      return OnNcActivate(message);
    case WM_NCPAINT:
      return OnNcPaint(message);
    case WM_SETICON:
      icon_.reset();
      [[fallthrough]];
    case WM_KILLFOCUS:
    case WM_MOUSEACTIVATE:
    case WM_MDIACTIVATE:
    case WM_SETTEXT:
    case WM_NCLBUTTONDOWN:
    case WM_NCRBUTTONDOWN:
    case WM_SYSCOMMAND:
    case WM_INITMENUPOPUP: {
      // Paint afterwards, because the system draws its own title bar for some of these.
      const LRESULT result = message.PassOn();
      if (!message.stopped) PaintAgain();
      return result;
    }
    case WM_SETCURSOR:
      if (const char* cursor = SizingCursor(LOWORD(message.lParam))) {
        SetCursor(LoadCursorA(nullptr, cursor));
        return TRUE;
      }
      break;
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
      return OnSettingsChanged(message);
    default:
      break;
  }
  return message.PassOn();
}

LRESULT CaptionHook::OnNcActivate(Subclass::Message message) {
  active_ = message.wParam != 0;
  ShareWithOwner(message.window, active_);
  if (message.stopped || !painter_->CanPaint(message.window)) return message.PassOn();
  // With -1 the system notes the change without drawing its own title bar, which would be seen for a moment.
  message.lParam = -1;
  const LRESULT result = message.PassOn();
  if (!message.stopped) {
    message.id = WM_NCPAINT;
    message.wParam = kWholeWindow;
    message.lParam = 0;
    OnNcPaint(message);
  }
  return result;
}

LRESULT CaptionHook::OnNcPaint(Subclass::Message message) {
  if (!painter_->CanPaint(message.window)) return message.PassOn();
  // Let the system draw the frame and the buttons, but not the area that is painted over at once.
  RECT place{};
  GetWindowRect(message.window, &place);
  const UniqueRegion rest(CreateRectRgnIndirect(&place));
  if (message.wParam > kWholeWindow) {
    CombineRgn(rest.get(), reinterpret_cast<HRGN>(message.wParam), nullptr, RGN_COPY);
  }
  // If there is no memory for the region, that area is drawn twice.
  Guarded([&] { CombineRgn(rest.get(), rest.get(), painter_->Covered(message.window).get(), RGN_DIFF); });
  message.wParam = reinterpret_cast<WPARAM>(rest.get());
  const LRESULT result = message.PassOn();
  if (!message.stopped) PaintAgain();
  return result;
}

LRESULT CaptionHook::OnSettingsChanged(const Subclass::Message& message) {
  painter_->ReadMetrics();
  const LRESULT result = message.PassOn();
  if (!message.stopped) {
    UseClassicFrame(painter_->Enabled());
    if (!message.stopped) PaintAgain();
  }
  return result;
}

void CaptionHook::UseClassicFrame(bool use) {
  if (use == std::exchange(usesClassicFrame_, use)) return;
  SetClassicFrame(window_, use);
}

void CaptionHook::PaintAgain() {
  // When memory runs out the title bar stays as it is.
  Guarded([&] { Paint(); });
}

void CaptionHook::Paint() {
  const HWND window = window_;
  if (!painter_->CanPaint(window)) return;
  if (!icon_) {
    const HICON icon = IconOf(window);
    if (Of(window) != this) return;  // the window removed the hook when it was asked
    icon_ = icon;
  }
  painter_->Paint(window, active_ || dialogActive_, *icon_);
}

}  // namespace snip
