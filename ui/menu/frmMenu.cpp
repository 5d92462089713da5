#include "ui/menu/frmMenu.h"

#include <windowsx.h>

#include <utility>

#include "platform/Drawing.h"
#include "platform/Fonts.h"
#include "platform/Handle.h"
#include "platform/MouseMessage.h"
#include "platform/Rects.h"
#include "platform/ScreenTwips.h"
#include "ui/menu/MenuPainter.h"
#include "ui/menu/OwnerStacking.h"

namespace snip {
namespace {

constexpr UINT kMouseTiltWheel = 0x020E;  ///< WM_MOUSEHWHEEL, which the headers define from Windows Vista on.
constexpr UINT kAnswerTime = 500;         ///< Milliseconds that another window has to answer a hit test.

MenuMouse MouseArguments(HWND window, int button, WPARAM keys, LPARAM lParam) {
  POINT screen{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  const Point at = ToPoint(screen);
  ClientToScreen(window, &screen);
  return {button, (keys & MK_SHIFT) != 0, at, ToPoint(screen)};
}

Point Pointer() {
  POINT pointer{};
  GetCursorPos(&pointer);
  return ToPoint(pointer);
}

}  // namespace

frmMenu::frmMenu(std::string name, Services services, Events events)
    : name_(std::move(name)), services_(std::move(services)), events_(std::move(events)) {
  ResetInfo();
}

frmMenu::~frmMenu() {
  lifetime_.End();
  destroying_ = true;
  frmMenu::ReleaseParts();
  Destroy();
}

void frmMenu::Clear() {
  items_.Clear();
  accessible_.Notify(EVENT_OBJECT_REORDER);
  RepaintAll();
}

void frmMenu::Add(const std::string& Caption, bool bEnabled, bool bChecked,
                  std::shared_ptr<const Picture> pPicture, std::int32_t ID) {
  items_.Add({.Caption = Caption,
              .Checked = bChecked,
              .Enabled = bEnabled,
              .Picture = std::move(pPicture),
              .ID = ID},
             metrics_, [this](std::string_view text) { return TextWidth(text); });
  accessible_.Notify(EVENT_OBJECT_REORDER);
  RepaintAll();
}

void frmMenu::SetIEnabled(int Index, bool enabled) {
  if (items_.Find(Index) == nullptr) return;
  items_.SetIEnabled(Index, enabled);
  accessible_.Notify(EVENT_OBJECT_STATECHANGE, Index);
  RepaintAll();
}

void frmMenu::Popup(int X, int Y, HWND MsgWnd, bool AllowDetach) {
  // A window that is being destroyed, for example along with its owner, cannot be shown.
  if (destroying_ && hWnd() != nullptr) return;
  owner_ = MsgWnd != nullptr ? GetAncestor(MsgWnd, GA_ROOT) : nullptr;
  watch_.Start(owner_, [this](const Subclass::Message& message) {
    const LRESULT result = message.PassOn();
    if (!message.stopped) OwnerMessage(message.id, message.wParam);
    return result;
  });
  lastMove_.reset();
  const Point pointer = Pointer();
  const bool atPointer = X == -1 && Y == -1;
  const TwipsPerPixel twips = ScreenTwips();
  const Point corner = atPointer ? pointer : Point{twips.ToPixelsX(X), twips.ToPixelsY(Y)};
  input_.Popup({.X = X, .Y = Y, .AllowDetach = AllowDetach, .cursor = pointer, .screen = ScreenAt(corner)});
}

void frmMenu::Unload() {
  input_.QueryUnload(CloseReason::Code);
}

void frmMenu::ResetInfo() {
  metrics_ = snip::ResetInfo(TextSize(Font(), "Qq").height, ScreenTwips());
}

void frmMenu::SetFont(HFONT font) {
  font_ = font;
  ResetInfo();
  RepaintAll();
}

bool frmMenu::PreTranslate(const MSG& message) {
  if (input_.State() != MenuState::Docked) return false;
  switch (message.message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      input_.KeyDown(static_cast<MenuKey>(message.wParam));
      return true;
    case WM_MOUSEWHEEL:
    case kMouseTiltWheel:
      return true;
    default:
      return false;
  }
}

void frmMenu::PaintRow(int index) {
  if (index < items_.iCount()) Repaint(input_.Layout().Row(index));
}

bool frmMenu::RaiseSelected(std::int32_t ID) {
  if (accessibleItems_.FocusedItem()) accessible_.Notify(EVENT_OBJECT_FOCUS, input_.HotItem());
  return lifetime_.Call(events_.Selected, ID);
}

void frmMenu::Hide() {
  ShowWindow(hWnd(), SW_HIDE);
  AnnounceEnd();
}

void frmMenu::BecomeOwned() {
  MakeOwned(hWnd(), owner_);
  AnnounceEnd();
}

void frmMenu::BecomeUnowned() {
  if (hWnd() != nullptr && !destroying_) MakeUnowned(hWnd());
}

void frmMenu::DropTopmost() {
  snip::DropTopmost(hWnd());
}

/// The system's move ends only when the left button is released. If the button is not held, the menu would
/// stick to the pointer.
bool frmMenu::StartSystemDrag(Point screen) {
  const Lifetime::Watch watch = lifetime_.Begin();
  const int leftButton = GetSystemMetrics(SM_SWAPBUTTON) != 0 ? VK_RBUTTON : VK_LBUTTON;
  if (GetAsyncKeyState(leftButton) >= 0) return true;
  SendMessageA(hWnd(), WM_NCLBUTTONDOWN, HTCAPTION, MAKELPARAM(screen.x, screen.y));
  return !watch.Ended();
}

void frmMenu::DestroyForm() {
  if (!destroying_) Destroy();
}

void frmMenu::StartTimer() {
  if (hWnd() != nullptr) SetTimer(hWnd(), kCloseTimer, MenuInput::kCloseInterval, nullptr);
}

void frmMenu::ShowTip(const std::string& text) {
  if (tip_) tip_->ShowTip(text, 0, 0);
}

void frmMenu::HideTip() {
  if (tip_) tip_->Hide();
}

bool frmMenu::Load() {
  ResetInfo();
  if (!painter_) painter_.emplace();
  if (!tip_ && services_.makeTip) tip_ = services_.makeTip();
  if (hWnd() != nullptr && !destroying_) return true;
  tracksLeave_ = false;
  // A window that is being destroyed cannot be replaced before it is gone.
  const bool made = hWnd() == nullptr &&
                    Create({.className = "frmMenu",
                            .title = name_.c_str(),
                            .style = WS_POPUP,
                            .exStyle = WS_EX_TOOLWINDOW,
                            .place = {},
                            // No CS_DBLCLKS: the second press of a double click is a press like any other.
                            .classStyle = CS_HREDRAW | CS_VREDRAW | CS_SAVEBITS | CS_DROPSHADOW});
  if (!made) {
    // Tells the owner that there is no drop-down, and leaves the menu ready for another try.
    const Lifetime::Watch watch = lifetime_.Begin();
    input_.Unload();
    return !watch.Ended();
  }
  destroying_ = false;
  // It cannot be created as a child window, which needs a parent.
  MakeUnowned(hWnd());
  return true;
}

bool frmMenu::Unfold(const Unfolding& unfolding) {
  const Lifetime::Watch watch = lifetime_.Begin();
  const Point corner = unfolding.corner;
  MoveTo(hWnd(), {corner.x, corner.y, 0, 0});
  ShowWindow(hWnd(), SW_SHOWNORMAL);
  MakeTopmost(hWnd());
  for (const Size& size : unfolding.sizes) {
    Sleep(Unfolding::kStepMilliseconds);
    MoveTo(hWnd(), {corner.x, corner.y, size.width, size.height});
    UpdateWindow(hWnd());
    if (watch.Ended()) return false;
  }
  announced_ = true;
  accessible_.Notify(EVENT_SYSTEM_MENUPOPUPSTART);
  return true;
}

void frmMenu::SetHeight(int height) {
  SetWindowPos(hWnd(), nullptr, 0, 0, PlaceInParent(hWnd()).width, height,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool frmMenu::RunPendingEvents() {
  if (destroying_) return true;
  const Lifetime::Watch watch = lifetime_.Begin();
  MSG message{};
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
    if (message.message == WM_QUIT) {
      // Again, for the message loop outside this one.
      PostQuitMessage(static_cast<int>(message.wParam));
      return true;
    }
    const bool done = services_.preTranslate ? services_.preTranslate(message) : PreTranslate(message);
    if (!done) {
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
    if (watch.Ended()) return false;
  }
  return true;
}

void frmMenu::ReleaseParts() {
  watch_.Stop();
  tip_.reset();
  painter_.reset();
}

void frmMenu::PostClick(std::uint32_t message, std::uint32_t keys, Point screen) {
  POINT place = ToPOINT(screen);
  const HWND target = WindowFromPoint(place);
  if (target == nullptr) return;
  DWORD_PTR part = HTCLIENT;  // also if the window hangs and does not answer
  SendMessageTimeoutA(target, WM_NCHITTEST, 0, MAKELPARAM(place.x, place.y), SMTO_ABORTIFHUNG, kAnswerTime,
                      &part);
  if (static_cast<LRESULT>(part) > HTCLIENT) {
    PostMessageA(target, message - WM_LBUTTONDOWN + WM_NCLBUTTONDOWN, part, MAKELPARAM(place.x, place.y));
    return;
  }
  ScreenToClient(target, &place);
  PostMessageA(target, message, keys, MAKELPARAM(place.x, place.y));
}

void frmMenu::Repaint(const Rect& area) const {
  const RECT bounds = ToRECT(area);
  if (hWnd() != nullptr) RedrawWindow(hWnd(), &bounds, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

void frmMenu::RepaintAll() const {
  if (hWnd() != nullptr) RedrawWindow(hWnd(), nullptr, nullptr, RDW_INVALIDATE);
}

void frmMenu::AnnounceEnd() {
  if (std::exchange(announced_, false)) accessible_.Notify(EVENT_SYSTEM_MENUPOPUPEND);
}

void frmMenu::Form_Paint() {
  const PaintDC paint(hWnd());
  const Size client = ClientSize(hWnd());
  if (!painter_ || client.width <= 0 || client.height <= 0) return;
  // Drawn off screen first, to avoid flicker.
  const Canvas canvas(client);
  const MenuLayout layout = input_.Layout();
  const MenuView view{.mode = input_.Mode(),
                      .hot = input_.HotItem(),
                      .closeBoxPushed = input_.CloseBoxPushed(),
                      .font = Font()};
  MenuPainter(canvas.dc(), items_, layout, view, *painter_).Draw(client);
  BitBlt(paint.get(), 0, 0, client.width, client.height, canvas.dc(), 0, 0, SRCCOPY);
}

void frmMenu::Form_MouseMove(const MenuMouse& mouse, WPARAM keys) {
  // When windows appear or disappear, the system reports a pointer that has not moved. That must not undo a
  // choice of the arrow keys.
  const LastMove move{mouse.screen, keys};
  if (lastMove_ == move) return;
  lastMove_ = move;
  if (!tracksLeave_ && input_.State() == MenuState::Floating) {
    TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, hWnd(), 0};
    tracksLeave_ = TrackMouseEvent(&track) != FALSE;
  }
  input_.MouseMove(mouse);
}

void frmMenu::KeepAboveOwner() {
  if (input_.State() == MenuState::Floating && owner_ != nullptr) snip::KeepAboveOwner(hWnd(), owner_);
}

void frmMenu::StayInFront() const {
  if (input_.State() == MenuState::Floating) BringToFront(hWnd());
}

void frmMenu::OwnerMessage(UINT message, WPARAM wParam) {
  switch (message) {
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) {
        input_.Deactivated();
      } else {
        KeepAboveOwner();
      }
      break;
    case WM_WINDOWPOSCHANGED:
      KeepAboveOwner();
      break;
    case WM_ENABLE:
      if (input_.State() == MenuState::Floating) {
        // A dialog disables only its owner, but the palette must not work beneath it either.
        EnableWindow(hWnd(), wParam != FALSE ? TRUE : FALSE);
      } else if (wParam == FALSE) {
        input_.Deactivated();
      }
      break;
    case WM_SIZE:
      if (wParam == SIZE_MINIMIZED) input_.Deactivated();
      break;
    case WM_SHOWWINDOW:
      if (wParam == FALSE) input_.Deactivated();
      break;
    case WM_DESTROY:
      owner_ = nullptr;
      input_.Deactivated();
      break;
    default:
      break;
  }
}

/// The window is destroyed from outside, for example along with its owner.
void frmMenu::OnDestroy() {
  if (destroying_) return;
  destroying_ = true;
  input_.Unload();
}

HFONT frmMenu::Font() const {
  return font_ != nullptr ? font_ : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

int frmMenu::TextWidth(std::string_view text) const {
  return TextSize(Font(), text).width;
}

LRESULT frmMenu::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (const auto answer = accessible_.Answer(message, wParam, lParam)) return *answer;
  switch (message) {
    case WM_ERASEBKGND:
      return 1;  // painting covers everything
    case WM_PAINT:
      Form_Paint();
      return 0;
    case WM_SIZE:
      input_.Resized({LOWORD(lParam), HIWORD(lParam)});
      return 0;
    case WM_TIMER:
      if (wParam == kCloseTimer) input_.tClose_Timer();
      return 0;
    case WM_MOUSEMOVE:
      Form_MouseMove(MouseArguments(hWnd(), HeldButtons(wParam), wParam, lParam), wParam);
      return 0;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
      input_.MouseDown(MouseArguments(hWnd(), ButtonOf(message), wParam, lParam));
      return 0;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
      input_.MouseUp(MouseArguments(hWnd(), ButtonOf(message), wParam, lParam));
      return 0;
    case WM_MOUSELEAVE:
      tracksLeave_ = false;
      lastMove_.reset();
      input_.MouseLeave();
      return 0;
    case WM_MOUSEWHEEL:
    case kMouseTiltWheel:
      return 0;
    case WM_NCLBUTTONDOWN:
      // What the system does, except that the window is not activated: the owner keeps the focus.
      if (wParam != HTCAPTION) return Default(message, wParam, lParam);
      SendMessageA(hWnd(), WM_SYSCOMMAND, SC_MOVE | HTCAPTION, lParam);
      return 0;
    case WM_CAPTURECHANGED:
      if (reinterpret_cast<HWND>(lParam) != hWnd()) input_.CaptureLost();
      return 0;
    case WM_KEYDOWN:
      input_.KeyDown(static_cast<MenuKey>(wParam));
      return 0;
    case WM_WINDOWPOSCHANGING:
      // Dragging raises the window, which must not take the focus from the owner.
      reinterpret_cast<WINDOWPOS*>(lParam)->flags |= SWP_NOACTIVATE;
      return Default(message, wParam, lParam);
    case WM_MOUSEACTIVATE:
      return MA_NOACTIVATE;
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) input_.Deactivated();
      return 0;
    case WM_ACTIVATEAPP:
      if (wParam == FALSE) input_.Deactivated();
      return 0;
    case WM_KILLFOCUS:
    case WM_DISPLAYCHANGE:
      input_.Deactivated();
      return 0;
    case WM_SYSCOLORCHANGE:
      RepaintAll();
      return 0;
    case WM_CLOSE:
      input_.QueryUnload(CloseReason::ControlMenu);
      return 0;
    case WM_ENDSESSION:
      if (wParam != FALSE) input_.QueryUnload(CloseReason::WindowsEnds);
      return 0;
    case WM_DESTROY:
      OnDestroy();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
