#include "ui/menu/MenuInput.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>
#include <utility>

#include "ui/commandbar/SystemSounds.h"

namespace snip {
namespace {

// The platform's numbers of messages and of held keys (MK_).
constexpr std::uint32_t kLeftButtonDown = 0x0201;
constexpr std::uint32_t kRightButtonDown = 0x0204;
constexpr std::uint32_t kLeftHeld = 0x0001;
constexpr std::uint32_t kRightHeld = 0x0002;
constexpr std::uint32_t kShiftHeld = 0x0004;

/// The tick counter stops one past the tick that shows the tip, so that the tip is shown once until the
/// pointer leaves.
constexpr int kLastTipTick = MenuInput::kTicksToTip + 1;

bool IsStill(Point from, Point to) {
  return std::abs(to.x - from.x) <= MenuInput::kStillPixels &&
         std::abs(to.y - from.y) <= MenuInput::kStillPixels;
}

}  // namespace

void MenuInput::Popup(const PopupRequest& request) {
  const std::uint64_t session = ++session_;
  // If the last unload has not been reported yet, report it first: the owner would take it for the end of
  // what it opens now.
  if (std::exchange(hideMenuDue_, false) && !(port_.RaiseHideMenu() && session_ == session)) return;
  if (!std::exchange(loaded_, true)) {
    if (!port_.Load() || session_ != session) return;
  } else if (state_ != MenuState::Hidden) {
    if (state_ == MenuState::Floating) port_.BecomeUnowned();
    LeaveScreen();
    if (!port_.RunPendingEvents() || session_ != session) return;
  }

  allowDetach_ = request.AllowDetach;
  hot_ = MenuHot::kNothingYet;
  tipTicks_ = 0;
  const bool shows = items_.iCount() > 0;
  if (shows) {
    state_ = MenuState::Docked;
    openingPress_ = true;
    openedAt_ = request.cursor;
  }
  // The button whose press opened the menu may have it.
  port_.ReleaseCapture();
  port_.StartTimer();
  if (!shows) return;
  const Rect place = PlacePopup(items_, metrics_, request);
  if (!port_.Unfold(Unfold(place, metrics_.twips)) || session_ != session) return;
  port_.PlaySystemSound(SystemSound::kMenuPopup);
  if (port_.RunPendingEvents() && session_ == session && state_ == MenuState::Docked) TakeCapture();
}

void MenuInput::MouseMove(const MenuMouse& mouse) {
  if (state_ == MenuState::Hidden || items_.iCount() == 0) return;
  if (!IsStill(openedAt_, mouse.screen)) openingPress_ = false;
  if (mouse.button == MouseButton::kRight && !AllowRightClick) return;
  const MenuLayout layout = Layout();
  PushCloseBox(ReactsTo(mouse.button) && layout.OnCloseBox(mouse.at));
  SetHot(layout.HitTest(mouse.at));
}

void MenuInput::MouseLeave() {
  if (state_ == MenuState::Floating && !captured_) SetHot(MenuHot::kNoItem);
}

void MenuInput::MouseDown(const MenuMouse& mouse) {
  if (state_ == MenuState::Hidden) return;
  openingPress_ = false;
  const MenuLayout layout = Layout();
  if (!layout.Contains(mouse.at)) {
    if (state_ == MenuState::Docked) ClickOutside(mouse);
    return;
  }
  if (!ReactsTo(mouse.button)) return;

  if (layout.OnDragHandle(mouse.at)) {
    if (state_ == MenuState::Floating || TearOff()) Drag(mouse.screen);
    return;
  }
  // An item is chosen when the button is released. A docked menu has the capture already; a torn-off one
  // takes it to get the release.
  if (state_ == MenuState::Floating) {
    TakeCapture();
    PushCloseBox(layout.OnCloseBox(mouse.at));
  }
}

/// False if the menu was destroyed, opened again or unloaded by an event.
bool MenuInput::TearOff() {
  const std::uint64_t session = session_;
  state_ = MenuState::Floating;
  HideTip();
  port_.BecomeOwned();
  port_.DropTopmost();
  port_.SetHeight(metrics_.twips.ToPixelsY(TornOffHeight(items_, metrics_)));
  port_.PaintAll();
  port_.PlayOfficeSound("ToolbarUndock");
  return port_.RaiseHideMenu() && session_ == session;
}

void MenuInput::Drag(Point screen) {
  captured_ = false;
  port_.StopTimer();
  port_.ReleaseCapture();
  std::ignore = port_.StartSystemDrag(screen);
}

/// Closes the menu and passes the click on to the window that it was aimed at.
void MenuInput::ClickOutside(const MenuMouse& mouse) {
  const std::uint64_t session = session_;
  const bool left = mouse.button == MouseButton::kLeft;
  LeaveScreen();
  port_.PostClick(left ? kLeftButtonDown : kRightButtonDown,
                  (left ? kLeftHeld : kRightHeld) | (mouse.shift ? kShiftHeld : 0), mouse.screen);
  // Raise it before the click arrives among the pending events: an owner that ignores the mouse while a menu
  // is open, as a frozen bar does, must handle the click.
  if (port_.RaiseHideMenu() && session_ == session) BeginUnload();
}

void MenuInput::MouseUp(const MenuMouse& mouse) {
  if (state_ == MenuState::Hidden) return;
  // The platform may end the capture with the release.
  if (state_ == MenuState::Docked) TakeCapture();
  if (!ReactsTo(mouse.button)) return;
  // A slow click on the button that opens the menu ends on the menu and must not choose anything.
  if (std::exchange(openingPress_, false) && IsStill(openedAt_, mouse.screen)) return;
  if (state_ == MenuState::Floating) ReleaseCapture();
  if (items_.iCount() == 0) return;

  PushCloseBox(false);
  const MenuLayout layout = Layout();
  if (const MenuItem* item = items_.Find(layout.HitTest(mouse.at))) {
    // Rows that were added to the open menu may be below its window.
    if (item->CanBeClicked() && layout.Contains(mouse.at)) Choose(*item);
  } else if (layout.OnCloseBox(mouse.at)) {
    port_.PlayOfficeSound("ToolbarClose");
    BeginUnload();
  } else if (state_ == MenuState::Docked && !layout.Contains(mouse.at)) {
    BeginUnload();
  }
}

void MenuInput::Choose(const MenuItem& item) {
  const std::uint64_t session = session_;
  const std::int32_t ID = item.ID;
  if (state_ == MenuState::Floating) {
    port_.PlayOfficeSound("ToolbarClick");
    std::ignore = port_.RaiseClicked(ID);
    return;
  }
  port_.PlaySystemSound(SystemSound::kMenuCommand);
  LeaveScreen();
  // What the user chose is reported whatever the owner does with the menu on HideMenu.
  if (port_.RaiseHideMenu() && port_.RaiseClicked(ID) && session_ == session) BeginUnload();
}

void MenuInput::CaptureLost() {
  if (!std::exchange(captured_, false)) return;
  if (state_ == MenuState::Docked) {
    BeginUnload();
  } else {
    PushCloseBox(false);
  }
}

void MenuInput::KeyDown(MenuKey key) {
  if (state_ == MenuState::Hidden) return;
  switch (key) {
    case MenuKey::Escape:
      // Only its close box closes a torn-off menu.
      if (state_ == MenuState::Docked) BeginUnload();
      break;
    case MenuKey::Up:
    case MenuKey::Down:
      if (items_.iCount() > 0) {
        SetHot(std::clamp(HotItem() + (key == MenuKey::Down ? 1 : -1), 0, items_.iCount() - 1));
      }
      break;
  }
}

void MenuInput::tClose_Timer() {
  if (state_ != MenuState::Docked) return;
  if (hot_ != MenuHot::kDragBar) {
    tipTicks_ = 0;
    HideTip();
    return;
  }
  if (tipTicks_ < kLastTipTick) ++tipTicks_;
  if (tipTicks_ != kTicksToTip) return;
  tipShown_ = true;
  port_.ShowTip(kDragTip);
}

void MenuInput::DoDefaultAction(int index) {
  const MenuItem* item = items_.Find(index);
  if (state_ != MenuState::Hidden && item != nullptr && item->CanBeClicked()) Choose(*item);
}

void MenuInput::Deactivated() {
  if (state_ == MenuState::Docked) BeginUnload();
}

void MenuInput::QueryUnload(CloseReason reason) {
  if (reason == CloseReason::Code || reason == CloseReason::WindowsEnds) Unload();
}

void MenuInput::Unload() {
  if (loaded_) BeginUnload();
}

void MenuInput::BeginUnload() {
  const std::uint64_t session = ++session_;
  loaded_ = false;
  hideMenuDue_ = true;
  LeaveScreen();
  port_.BecomeUnowned();
  port_.StopTimer();
  port_.ReleaseParts();
  if (!port_.RunPendingEvents()) return;
  // A `Popup` among the pending events may have raised it already.
  if (std::exchange(hideMenuDue_, false) && !port_.RaiseHideMenu()) return;
  if (session_ == session) port_.DestroyForm();
}

void MenuInput::SetHot(int hot) {
  const int before = std::exchange(hot_, hot);
  if (before == hot_) return;
  for (const int changed : {before, hot_}) {
    if (changed == MenuHot::kDragBar) {
      port_.PaintDragBar();
    } else if (items_.Find(changed) != nullptr) {
      port_.PaintRow(changed);
    }
  }
  if (const MenuItem* item = items_.Find(hot_)) std::ignore = port_.RaiseSelected(item->ID);
}

/// The box is painted with the bar.
void MenuInput::PushCloseBox(bool pushed) {
  if (std::exchange(closeBoxPushed_, pushed) != pushed) port_.PaintDragBar();
}

/// Hides the menu and its tip, and releases the capture.
void MenuInput::LeaveScreen() {
  const bool visible = std::exchange(state_, MenuState::Hidden) != MenuState::Hidden;
  closeBoxPushed_ = false;
  ReleaseCapture();
  HideTip();
  if (visible) port_.Hide();
}

void MenuInput::TakeCapture() {
  captured_ = true;
  port_.TakeCapture();
}

void MenuInput::ReleaseCapture() {
  if (std::exchange(captured_, false)) port_.ReleaseCapture();
}

void MenuInput::HideTip() {
  if (std::exchange(tipShown_, false)) port_.HideTip();
}

/// Whether the menu reacts to pressing, releasing or holding these buttons.
bool MenuInput::ReactsTo(int buttons) const {
  return AllowRightClick ? buttons != 0 : (buttons & MouseButton::kLeft) != 0;
}

}  // namespace snip
