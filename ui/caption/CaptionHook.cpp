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
/// The window's own procedure, while ours is still called by somebody although the hook is removed.
constexpr const char* kPassOnProperty = "BnCaptionPassOn";

HANDLE ToHandle(WNDPROC procedure) {
  return reinterpret_cast<HANDLE>(procedure);
}

WNDPROC ToProcedure(HANDLE property) {
  return reinterpret_cast<WNDPROC>(property);
}

WNDPROC Replace(HWND window, WNDPROC procedure) {
  return reinterpret_cast<WNDPROC>(
      SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

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
  if (IsWindow(window) == 0 || Of(window) != nullptr) return;
  installed_ = std::shared_ptr<CaptionHook>(this, [](CaptionHook*) {});  // first: it may throw
  window_ = window;
  painter_ = &painter;
  active_ = HasActiveCaption(window);
  dialogActive_ = false;
  frameTaken_ = false;  // a window that went with its hook took its frame along
  icon_.reset();
  SetPropA(window, kHookProperty, this);
  // Still in the chain from an earlier time?
  previous_ = ToProcedure(RemovePropA(window, kPassOnProperty));
  if (previous_ == nullptr) previous_ = Replace(window, &HookProc);
  SetPropA(window, kPreviousProperty, ToHandle(previous_));
  TakeOverFrame(painter.Enabled());
  ShareWithOwner(window, active_ || GetActiveWindow() == window);
}

void CaptionHook::Remove() {
  const HWND window = window_;
  Detach();
  if (window == nullptr) return;
  if (std::exchange(frameTaken_, false)) SetClassicFrame(window, false);
}

/// Takes the hook out of the chain of procedures.
void CaptionHook::Detach() {
  const HWND window = std::exchange(window_, nullptr);
  if (window == nullptr) return;
  installed_.reset();
  ShareWithOwner(window, false);
  RemovePropA(window, kHookProperty);
  const WNDPROC previous = ToProcedure(RemovePropA(window, kPreviousProperty));
  if (previous == nullptr) return;
  const auto current = reinterpret_cast<WNDPROC>(GetWindowLongPtrA(window, GWLP_WNDPROC));
  if (current == &HookProc) {
    Replace(window, previous);
  } else {
    // A later subclass still calls us; restoring the old procedure would unhook it as well.
    SetPropA(window, kPassOnProperty, ToHandle(previous));
  }
}

/// The owner of a dialog keeps its active title bar while the dialog has the focus.
void CaptionHook::ShareWithOwner(HWND window, bool active) {
  const HWND owner = GetWindow(window, GW_OWNER);
  CaptionHook* hook = owner == nullptr ? nullptr : Of(owner);
  if (hook == nullptr || active == std::exchange(hook->dialogActive_, active)) return;
  PaintAgain(hook->installed_);
}

CaptionHook* CaptionHook::Of(HWND window) {
  return static_cast<CaptionHook*>(GetPropA(window, kHookProperty));
}

LRESULT CALLBACK CaptionHook::HookProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  CaptionHook* hook = Of(window);
  const WNDPROC previous = hook != nullptr ? hook->previous_ : ToProcedure(GetPropA(window, kPassOnProperty));
  if (previous == nullptr) return DefWindowProcA(window, message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    if (hook != nullptr) hook->Detach();
    RemovePropA(window, kPassOnProperty);
    return CallWindowProcA(previous, window, message, wParam, lParam);
  }
  if (hook == nullptr) return CallWindowProcA(previous, window, message, wParam, lParam);
  return hook->HandleMessage(previous, message, wParam, lParam);
}

// The hook may be removed, and be gone, once the previous procedure has run: after each call of it, only what
// `installed` still has is to be used.
LRESULT CaptionHook::HandleMessage(WNDPROC previous, UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = window_;
  const Installed installed = installed_;
  switch (message) {
    case WM_SIZE: {
      const LRESULT result = CallWindowProcA(previous, window, message, wParam, lParam);
      if (!installed.expired()) SendMessageA(window, WM_NCPAINT, 1, 0);
      return result;
    }
    case WM_NCACTIVATE:
      return OnNcActivate(previous, wParam, lParam);
    case WM_NCPAINT:
      return OnNcPaint(previous, wParam, lParam);
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
      // Painted afterwards: the system draws its own title bar for some of these.
      const LRESULT result = CallWindowProcA(previous, window, message, wParam, lParam);
      PaintAgain(installed);
      return result;
    }
    case WM_SETCURSOR:
      if (const char* cursor = SizingCursor(LOWORD(lParam))) {
        SetCursor(LoadCursorA(nullptr, cursor));
        return TRUE;
      }
      break;
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
      return OnSettingsChanged(previous, message, wParam, lParam);
    default:
      break;
  }
  return CallWindowProcA(previous, window, message, wParam, lParam);
}

LRESULT CaptionHook::OnNcActivate(WNDPROC previous, WPARAM wParam, LPARAM lParam) {
  const HWND window = window_;
  const Installed installed = installed_;
  active_ = wParam != 0;
  ShareWithOwner(window, active_);
  if (!painter_->CanPaint(window)) return CallWindowProcA(previous, window, WM_NCACTIVATE, wParam, lParam);
  // With -1 the system notes the change but draws nothing: its own title bar would be seen for a moment.
  const LRESULT result = CallWindowProcA(previous, window, WM_NCACTIVATE, wParam, -1);
  if (CaptionHook* hook = Still(installed)) hook->OnNcPaint(previous, 1, 0);
  return result;
}

/// `updateRegion` is one of the screen, or 1 for the whole window.
LRESULT CaptionHook::OnNcPaint(WNDPROC previous, WPARAM updateRegion, LPARAM lParam) {
  const HWND window = window_;
  const Installed installed = installed_;
  if (!painter_->CanPaint(window)) {
    return CallWindowProcA(previous, window, WM_NCPAINT, updateRegion, lParam);
  }
  // The system is to draw the frame and the buttons, but not what will be painted over at once.
  RECT place{};
  GetWindowRect(window, &place);
  const UniqueRegion rest(CreateRectRgnIndirect(&place));
  if (updateRegion > 1) CombineRgn(rest.get(), reinterpret_cast<HRGN>(updateRegion), nullptr, RGN_COPY);
  // Without memory for the region it is drawn twice.
  Guarded([&] { CombineRgn(rest.get(), rest.get(), painter_->Covered(window).get(), RGN_DIFF); });
  const LRESULT result =
      CallWindowProcA(previous, window, WM_NCPAINT, reinterpret_cast<WPARAM>(rest.get()), lParam);
  PaintAgain(installed);
  return result;
}

LRESULT CaptionHook::OnSettingsChanged(WNDPROC previous, UINT message, WPARAM wParam, LPARAM lParam) {
  const Installed installed = installed_;
  painter_->ReadMetrics();
  const LRESULT result = CallWindowProcA(previous, window_, message, wParam, lParam);
  if (CaptionHook* hook = Still(installed)) {
    hook->TakeOverFrame(hook->painter_->Enabled());
    PaintAgain(installed);
  }
  return result;
}

void CaptionHook::TakeOverFrame(bool take) {
  if (take == std::exchange(frameTaken_, take)) return;
  SetClassicFrame(window_, take);
}

void CaptionHook::PaintAgain(const Installed& installed) {
  // When memory runs out the title bar stays as it is.
  if (CaptionHook* hook = Still(installed)) Guarded([&] { hook->Paint(); });
}

void CaptionHook::Paint() {
  const HWND window = window_;
  if (!painter_->CanPaint(window)) return;
  if (!icon_) {
    const Installed installed = installed_;
    const HICON icon = IconOf(window);
    if (installed.expired()) return;
    icon_ = icon;
  }
  painter_->Paint(window, active_ || dialogActive_, *icon_);
}

}  // namespace snip
