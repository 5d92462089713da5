#include "ui/menu/MenuInput.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "ui/commandbar/SystemSounds.h"

namespace snip {
namespace {

// As the platform numbers them.
constexpr std::uint32_t kLeftButtonDown = 0x0201;
constexpr std::uint32_t kRightButtonDown = 0x0204;
constexpr std::uint32_t kLeftHeld = 0x0001;
constexpr std::uint32_t kRightHeld = 0x0002;
constexpr std::uint32_t kShiftHeld = 0x0004;

/// The tip's counter stops one past the tick that shows the tip, so that it is shown once in a visit.
constexpr int kLastTipTick = MenuInput::kTicksToTip + 1;

bool IsStill(Point from, Point to) {
  return std::abs(to.x - from.x) <= MenuInput::kStillPixels &&
         std::abs(to.y - from.y) <= MenuInput::kStillPixels;
}

}  // namespace

MenuReaction MenuInput::Popup(const PopupRequest& request) {
  MenuReaction reaction;
  ++session_;
  // Opened anew while it was about to tell that it had been unloaded: that has to come first, or the owner
  // would take it for the end of what it opens now.
  if (std::exchange(hideMenuDue_, false)) {
    reaction.effects.emplace_back(MenuEffect::RaiseHideMenu{});
    RunThen(reaction, [this, request] { return HideFormer(request); });
    return reaction;
  }
  return HideFormer(request);
}

MenuReaction MenuInput::HideFormer(const PopupRequest& request) {
  MenuReaction reaction;
  if (!std::exchange(loaded_, true)) {
    reaction.effects.emplace_back(MenuEffect::Load{});
    RunThen(reaction, [this, request] { return Open(request); });
    return reaction;
  }
  if (state_ == MenuState::Hidden) return Open(request);
  if (state_ == MenuState::Floating) reaction.effects.emplace_back(MenuEffect::BecomeUnowned{});
  LeaveScreen(reaction);
  reaction.effects.emplace_back(MenuEffect::RunPendingEvents{});
  RunThen(reaction, [this, request] { return Open(request); });
  return reaction;
}

MenuReaction MenuInput::Open(const PopupRequest& request) {
  MenuReaction reaction;
  allowDetach_ = request.AllowDetach;
  hot_ = MenuHot::kNothingYet;
  tipTicks_ = 0;
  // That of the button whose press has opened the menu.
  reaction.effects.emplace_back(MenuEffect::ReleaseCapture{});
  reaction.effects.emplace_back(MenuEffect::StartTimer{});
  if (items_.iCount() == 0) return reaction;

  state_ = MenuState::Docked;
  openingPress_ = true;
  openedAt_ = request.cursor;
  const Rect place = PlacePopup(items_, metrics_, request);
  reaction.effects.emplace_back(MenuEffect::Unfold{Unfold(place, metrics_.twips)});
  RunThen(reaction, [this] { return Opened(); });
  return reaction;
}

MenuReaction MenuInput::Opened() {
  MenuReaction reaction;
  reaction.effects.emplace_back(MenuEffect::PlaySystemSound{SystemSound::kMenuPopup});
  reaction.effects.emplace_back(MenuEffect::RunPendingEvents{});
  RunThen(reaction, [this] {
    MenuReaction next;
    if (state_ == MenuState::Docked) TakeCapture(next);
    return next;
  });
  return reaction;
}

MenuReaction MenuInput::MouseMove(const MenuMouse& mouse) {
  MenuReaction reaction;
  if (state_ == MenuState::Hidden || items_.iCount() == 0) return reaction;
  if (!IsStill(openedAt_, mouse.screen)) openingPress_ = false;
  if (mouse.button == MouseButton::kRight && !AllowRightClick) return reaction;
  const MenuLayout layout = Layout();
  PushCloseBox(Acts(mouse.button) && layout.OnCloseBox(mouse.at), reaction);
  SetHot(layout.HitTest(mouse.at), reaction);
  return reaction;
}

MenuReaction MenuInput::MouseLeave() {
  MenuReaction reaction;
  if (state_ == MenuState::Floating && !captured_) SetHot(MenuHot::kNoItem, reaction);
  return reaction;
}

MenuReaction MenuInput::MouseDown(const MenuMouse& mouse) {
  MenuReaction reaction;
  if (state_ == MenuState::Hidden) return reaction;
  openingPress_ = false;
  const MenuLayout layout = Layout();
  if (!layout.Contains(mouse.at)) {
    if (state_ == MenuState::Docked) ClickOutside(mouse, reaction);
    return reaction;
  }
  if (!Acts(mouse.button)) return reaction;

  if (layout.OnDragHandle(mouse.at)) {
    if (state_ == MenuState::Floating) return Drag(mouse.screen);
    TearOff(reaction);
    RunThen(reaction, [this, screen = mouse.screen] { return Drag(screen); });
    return reaction;
  }
  // Nothing is chosen before the release. A docked menu sees that anyway; a torn-off one that is pressed has
  // to hold the mouse for it.
  if (state_ == MenuState::Floating) {
    TakeCapture(reaction);
    PushCloseBox(layout.OnCloseBox(mouse.at), reaction);
  }
  return reaction;
}

void MenuInput::TearOff(MenuReaction& reaction) {
  HideTip(reaction);
  state_ = MenuState::Floating;
  reaction.effects.emplace_back(MenuEffect::BecomeOwned{});
  reaction.effects.emplace_back(MenuEffect::DropTopmost{});
  const int height = metrics_.twips.ToPixelsY(TornOffHeight(items_, metrics_));
  reaction.effects.emplace_back(MenuEffect::SetHeight{height});
  reaction.effects.emplace_back(MenuEffect::PaintAll{});
  reaction.effects.emplace_back(MenuEffect::PlayOfficeSound{"ToolbarUndock"});
  reaction.effects.emplace_back(MenuEffect::RaiseHideMenu{});
}

MenuReaction MenuInput::Drag(Point screen) {
  captured_ = false;
  return {{MenuEffect::StopTimer{}, MenuEffect::ReleaseCapture{}, MenuEffect::StartSystemDrag{screen}},
          nullptr};
}

/// The click still reaches what it was aimed at: the menu was only in its way.
void MenuInput::ClickOutside(const MenuMouse& mouse, MenuReaction& reaction) {
  const bool left = mouse.button == MouseButton::kLeft;
  LeaveScreen(reaction);
  reaction.effects.emplace_back(
      MenuEffect::PostClick{left ? kLeftButtonDown : kRightButtonDown,
                            (left ? kLeftHeld : kRightHeld) | (mouse.shift ? kShiftHeld : 0), mouse.screen});
  // Told before the click arrives, which it does among the pending events: an owner that does without the
  // mouse while a menu is open, as a frozen bar does, has to have it again for the click.
  reaction.effects.emplace_back(MenuEffect::RaiseHideMenu{});
  RunThen(reaction, [this] {
    MenuReaction next;
    BeginUnload(next);
    return next;
  });
}

MenuReaction MenuInput::MouseUp(const MenuMouse& mouse) {
  MenuReaction reaction;
  if (state_ == MenuState::Hidden) return reaction;
  // The platform may end the capture with the release.
  if (state_ == MenuState::Docked) TakeCapture(reaction);
  if (!Acts(mouse.button)) return reaction;
  // Whoever presses a button slowly is still about to open the menu and chooses nothing in it.
  if (std::exchange(openingPress_, false) && IsStill(openedAt_, mouse.screen)) return reaction;
  if (state_ == MenuState::Floating) ReleaseCapture(reaction);
  if (items_.iCount() == 0) return reaction;

  PushCloseBox(false, reaction);
  const MenuLayout layout = Layout();
  if (const MenuItem* item = items_.Find(layout.HitTest(mouse.at))) {
    // Rows that were added to the open menu may lie below its window.
    if (item->CanBeClicked() && layout.Contains(mouse.at)) Choose(*item, reaction);
  } else if (layout.OnCloseBox(mouse.at)) {
    reaction.effects.emplace_back(MenuEffect::PlayOfficeSound{"ToolbarClose"});
    BeginUnload(reaction);
  } else if (state_ == MenuState::Docked && !layout.Contains(mouse.at)) {
    BeginUnload(reaction);
  }
  return reaction;
}

void MenuInput::Choose(const MenuItem& item, MenuReaction& reaction) {
  const MenuEffect::RaiseClicked clicked{item.ID};
  if (state_ == MenuState::Floating) {
    reaction.effects.emplace_back(MenuEffect::PlayOfficeSound{"ToolbarClick"});
    reaction.effects.emplace_back(clicked);
    return;
  }
  reaction.effects.emplace_back(MenuEffect::PlaySystemSound{SystemSound::kMenuCommand});
  LeaveScreen(reaction);
  reaction.effects.emplace_back(MenuEffect::RaiseHideMenu{});
  // What the user chose is reported whatever the owner does with the menu on HideMenu.
  reaction.then = [this, clicked, session = session_] {
    MenuReaction next;
    next.effects.emplace_back(clicked);
    next.then = [this, session] {
      MenuReaction last;
      if (session_ == session) BeginUnload(last);
      return last;
    };
    return next;
  };
}

MenuReaction MenuInput::CaptureLost() {
  MenuReaction reaction;
  if (!std::exchange(captured_, false)) return reaction;
  if (state_ == MenuState::Docked) {
    CloseDocked(reaction);
  } else {
    PushCloseBox(false, reaction);
  }
  return reaction;
}

MenuReaction MenuInput::KeyDown(MenuKey key) {
  MenuReaction reaction;
  if (state_ == MenuState::Hidden) return reaction;
  switch (key) {
    case MenuKey::Escape:
      // A torn-off menu is closed by nothing but its close box.
      if (state_ == MenuState::Docked) BeginUnload(reaction);
      break;
    case MenuKey::Up:
    case MenuKey::Down:
      if (items_.iCount() > 0) {
        SetHot(std::clamp(HotItem() + (key == MenuKey::Down ? 1 : -1), 0, items_.iCount() - 1), reaction);
      }
      break;
  }
  return reaction;
}

MenuReaction MenuInput::tClose_Timer() {
  MenuReaction reaction;
  if (state_ != MenuState::Docked) return reaction;
  if (hot_ != MenuHot::kDragBar) {
    tipTicks_ = 0;
    HideTip(reaction);
    return reaction;
  }
  if (tipTicks_ < kLastTipTick) ++tipTicks_;
  if (tipTicks_ == kTicksToTip) {
    tipShown_ = true;
    reaction.effects.emplace_back(MenuEffect::ShowTip{kDragTip});
  }
  return reaction;
}

MenuReaction MenuInput::DoDefaultAction(int index) {
  MenuReaction reaction;
  const MenuItem* item = items_.Find(index);
  if (state_ != MenuState::Hidden && item != nullptr && item->CanBeClicked()) Choose(*item, reaction);
  return reaction;
}

MenuReaction MenuInput::Deactivated() {
  MenuReaction reaction;
  if (state_ == MenuState::Docked) CloseDocked(reaction);
  return reaction;
}

MenuReaction MenuInput::QueryUnload(CloseReason reason) {
  const bool obeyed = reason == CloseReason::Code || reason == CloseReason::WindowsEnds;
  return obeyed ? Unload() : MenuReaction{};
}

MenuReaction MenuInput::Unload() {
  MenuReaction reaction;
  if (loaded_) BeginUnload(reaction);
  return reaction;
}

void MenuInput::CloseDocked(MenuReaction& reaction) {
  LeaveScreen(reaction);
  BeginUnload(reaction);
}

void MenuInput::BeginUnload(MenuReaction& reaction) {
  ++session_;
  LeaveScreen(reaction);
  loaded_ = false;
  hideMenuDue_ = true;
  reaction.effects.emplace_back(MenuEffect::BecomeUnowned{});
  reaction.effects.emplace_back(MenuEffect::StopTimer{});
  reaction.effects.emplace_back(MenuEffect::ReleaseParts{});
  reaction.effects.emplace_back(MenuEffect::RunPendingEvents{});
  reaction.then = [this, session = session_] {
    MenuReaction next;
    // A `Popup` among the pending events has told it already.
    if (std::exchange(hideMenuDue_, false)) next.effects.emplace_back(MenuEffect::RaiseHideMenu{});
    next.then = [this, session] {
      MenuReaction last;
      if (session_ == session) last.effects.emplace_back(MenuEffect::Destroy{});
      return last;
    };
    return next;
  };
}

void MenuInput::SetHot(int hot, MenuReaction& reaction) {
  if (hot == hot_) return;
  PaintHot(reaction);
  hot_ = hot;
  PaintHot(reaction);
  if (const MenuItem* item = items_.Find(hot_)) {
    reaction.effects.emplace_back(MenuEffect::RaiseSelected{item->ID});
  }
}

void MenuInput::PaintHot(MenuReaction& reaction) const {
  if (hot_ == MenuHot::kDragBar) {
    reaction.effects.emplace_back(MenuEffect::PaintDragBar{});
  } else if (items_.Find(hot_) != nullptr) {
    reaction.effects.emplace_back(MenuEffect::PaintRow{hot_});
  }
}

void MenuInput::PushCloseBox(bool pushed, MenuReaction& reaction) {
  if (std::exchange(closeBoxPushed_, pushed) != pushed) {
    reaction.effects.emplace_back(MenuEffect::PaintCloseBox{});
  }
}

/// Nothing of the menu is left on the screen, and the mouse is free.
void MenuInput::LeaveScreen(MenuReaction& reaction) {
  ReleaseCapture(reaction);
  HideTip(reaction);
  closeBoxPushed_ = false;
  if (std::exchange(state_, MenuState::Hidden) != MenuState::Hidden) {
    reaction.effects.emplace_back(MenuEffect::Hide{});
  }
}

void MenuInput::TakeCapture(MenuReaction& reaction) {
  captured_ = true;
  reaction.effects.emplace_back(MenuEffect::TakeCapture{});
}

void MenuInput::ReleaseCapture(MenuReaction& reaction) {
  if (std::exchange(captured_, false)) reaction.effects.emplace_back(MenuEffect::ReleaseCapture{});
}

void MenuInput::HideTip(MenuReaction& reaction) {
  if (std::exchange(tipShown_, false)) reaction.effects.emplace_back(MenuEffect::HideTip{});
}

/// Whether a press or release of a button, or holding some, is for the menu.
bool MenuInput::Acts(int buttons) const {
  return AllowRightClick ? buttons != 0 : (buttons & MouseButton::kLeft) != 0;
}

/// Goes on in the course of events, unless the menu is opened anew or unloaded before.
void MenuInput::RunThen(MenuReaction& reaction, std::function<MenuReaction()> next) const {
  reaction.then = [this, session = session_, next = std::move(next)] {
    return session_ == session ? next() : MenuReaction{};
  };
}

}  // namespace snip
