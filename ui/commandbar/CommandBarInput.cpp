#include "ui/commandbar/CommandBarInput.h"

#include <limits>
#include <utility>

namespace snip {
namespace {

/// The reaction to its end, and then the next one.
BarReaction Afterwards(BarReaction reaction, std::function<BarReaction()> next) {
  if (!reaction.then) {
    reaction.then = std::move(next);
  } else {
    reaction.then = [then = std::move(reaction.then), next = std::move(next)] {
      return Afterwards(then(), next);
    };
  }
  return reaction;
}

}  // namespace

BarReaction CommandBarInput::Show(bool runMode) {
  BarReaction reaction;
  runMode_ = runMode;
  if (runMode_) {
    reaction.effects.emplace_back(BarEffect::StartHoverTimer{});
    return reaction;
  }
  HideTip(reaction);
  ReleaseMouse(reaction);
  EndPress();
  hot_ = ButtonId::None;
  reaction.effects.emplace_back(BarEffect::StopHoverTimer{});
  return reaction;
}

BarReaction CommandBarInput::tHitTest_Timer(std::optional<Point> client, Point screen) {
  BarReaction reaction;
  if (!runMode_ || frozen_) return reaction;
  const int hit = client ? buttons_.BtnFromPoint(client->x, client->y) : -1;
  if (deadPress_) return reaction;

  if (buttons_.IdOf(hit) != hot_) return Follow(buttons_.IdOf(hit));
  Rest(hit, screen, reaction);
  return reaction;
}

/// The mouse came from the hot button, or from none, to another, or to none.
BarReaction CommandBarInput::Follow(ButtonId hitId) {
  BarReaction reaction;
  HideTip(reaction);
  hoverTicks_ = 0;
  const int left = HotButton();  // -1 also when it was removed: then there is no button left to name
  hot_ = ButtonId::None;
  if (left < 0) {
    EnterButton(hitId, reaction);
    return reaction;
  }
  if (left == PressedButton()) pressed_.over = false;
  if (!buttons_.Find(left)->IsToggledOn()) PaintCurrent(left, reaction);
  // Raised for every button that was hot, a disabled one included: a container clears by it what it shows
  // about the button.
  reaction.effects.emplace_back(BarEffect::RaiseButton{BarButtonEvent::MouseLeave, left});
  reaction.then = [this, hitId] {
    BarReaction next;
    // While the container handled MouseLeave, another tick may have found the button under the mouse already,
    // or the bar may have stopped following the mouse.
    if (hot_ == ButtonId::None && runMode_ && !frozen_ && !deadPress_) EnterButton(hitId, next);
    return next;
  };
  return reaction;
}

/// The mouse rests on the hot button, or on none.
void CommandBarInput::Rest(int index, Point screen, BarReaction& reaction) {
  // The count does not start again by itself: the tip is shown once in a visit.
  if (hoverTicks_ < std::numeric_limits<std::int16_t>::max()) ++hoverTicks_;
  const BarButton* button = buttons_.Find(index);
  if (hoverTicks_ != kTicksToTip || button == nullptr || button->DisplayType != DisplayType::Picture) return;
  tipShown_ = true;
  reaction.effects.emplace_back(BarEffect::ShowTip{button->Caption, screen});
}

void CommandBarInput::EnterButton(ButtonId id, BarReaction& reaction) {
  const int index = buttons_.IndexOf(id);
  if (index < 0) return;
  hot_ = id;
  if (!buttons_.Find(index)->Enabled) return;
  PaintCurrent(index, reaction);
  reaction.effects.emplace_back(BarEffect::RaiseButton{BarButtonEvent::MouseHover, index});
}

BarReaction CommandBarInput::MouseDown(const BarMouse& mouse) {
  // The timer may not have seen the mouse yet: a finger comes and goes within one tick.
  if (runMode_ && !frozen_ && !deadPress_) {
    const ButtonId hit = buttons_.IdOf(buttons_.BtnFromPoint(mouse.at.x, mouse.at.y));
    if (hit != hot_) return Afterwards(Follow(hit), [this, mouse] { return StartPress(mouse); });
  }
  return StartPress(mouse);
}

BarReaction CommandBarInput::StartPress(const BarMouse& mouse) {
  BarReaction reaction;
  if (runMode_) {
    mouseHeld_ = true;
    reaction.effects.emplace_back(BarEffect::TakeCapture{});
    reaction.then = [this, at = mouse.at] { return PressAt(at); };
  }
  reaction.effects.emplace_back(BarEffect::RaiseMouse{BarMouseEvent::MouseDown, mouse});
  return reaction;
}

BarReaction CommandBarInput::PressAt(Point at) {
  BarReaction reaction;
  HideTip(reaction);
  // The container's MouseDown may have taken the mouse away, by a message box for example.
  if (!mouseHeld_) return reaction;

  const Press before = EndPress();
  const int hit = buttons_.BtnFromPoint(at.x, at.y);
  const BarButton* button = buttons_.Find(hit);
  // A second mouse button pressed during a press begins another one.
  if (buttons_.IdOf(hit) != before.button) LetGo(before, reaction);
  if (button == nullptr || !button->Enabled) {
    deadPress_ = true;
    return reaction;
  }

  pressed_ = {button->Id, button->PartAt(at.x), true};
  if (pressed_.part == ButtonPart::Arrow || button->Is(ButtonType::Menu)) {
    OpenDropdown(pressed_, reaction);
  } else {
    PaintCurrent(hit, reaction);
    PlayClick(reaction);
  }
  return reaction;
}

/// Draws a button pressed, raises its `Dropdown`, and draws it at rest once the menu is closed.
void CommandBarInput::OpenDropdown(const Press& press, BarReaction& reaction) {
  const int index = buttons_.IndexOf(press.button);
  const Press outer = std::exchange(droppedDown_, press);  // a menu may be opened while another is open
  PaintCurrent(index, reaction);
  reaction.effects.emplace_back(BarEffect::RaiseButton{BarButtonEvent::Dropdown, index});
  reaction.then = [this, id = press.button, outer] {
    BarReaction next;
    droppedDown_ = outer;
    if (pressed_.button == id) pressed_.over = false;
    const int rested = buttons_.IndexOf(id);
    if (rested >= 0 && !frozen_) {
      next.effects.emplace_back(BarEffect::PaintButton{rested, RedrawLook(*buttons_.Find(rested))});
    }
    return next;
  };
}

BarReaction CommandBarInput::MouseMove(const BarMouse& mouse) {
  BarReaction reaction;
  reaction.effects.emplace_back(BarEffect::RaiseMouse{BarMouseEvent::MouseMove, mouse});
  if (runMode_) {
    reaction.then = [this, mouse] { return mouse.Button != 0 ? DragTo(mouse.at) : MovedFreely(mouse.at); };
  }
  return reaction;
}

BarReaction CommandBarInput::DragTo(Point at) {
  BarReaction reaction;
  const int hit = buttons_.BtnFromPoint(at.x, at.y);
  const BarButton* button = buttons_.Find(PressedButton());
  if (button == nullptr) return reaction;
  pressed_.over = hit == PressedButton() && button->Enabled;
  PaintCurrent(PressedButton(), reaction);
  return reaction;
}

/// No mouse button is held: a press that is still known was released where the bar could not see it.
BarReaction CommandBarInput::MovedFreely(Point at) {
  BarReaction reaction;
  buttons_.BtnFromPoint(at.x, at.y);
  ReleaseMouse(reaction);
  LetGo(EndPress(), reaction);
  return reaction;
}

BarReaction CommandBarInput::MouseUp(const BarMouse& mouse) {
  BarReaction reaction;
  ReleaseMouse(reaction);
  if (runMode_) Release(mouse.at, reaction);
  // Unlike the other mouse events this one comes last: the click first, then the release that made it.
  reaction.effects.emplace_back(BarEffect::RaiseMouse{BarMouseEvent::MouseUp, mouse});
  return reaction;
}

void CommandBarInput::Release(Point at, BarReaction& reaction) {
  const Press press = EndPress();
  const int hit = buttons_.BtnFromPoint(at.x, at.y);
  const BarButton* button = buttons_.Find(hit);
  const bool clicked = button != nullptr && button->Enabled && button->Id == hot_ &&
                       button->Id == press.button && press.part == ButtonPart::Push;
  if (clicked) {
    Click(hit, reaction);
  } else {
    LetGo(press, reaction);
  }
}

void CommandBarInput::Click(int index, BarReaction& reaction) {
  const BarButton& button = *buttons_.Find(index);
  // The redraw that a changed State asks for is the paint below: the button as it looks under the mouse.
  if (button.Is(ButtonType::Toggle)) buttons_.SetState(index, button.IsToggledOn() ? 0 : 1);
  if (button.Is(ButtonType::DropDown)) buttons_.SetState(index, 0);
  PaintCurrent(index, reaction);
  reaction.effects.emplace_back(BarEffect::RaiseButton{BarButtonEvent::ButtonClicked, index});
}

BarReaction CommandBarInput::DblClick() {
  return {{BarEffect::RaiseDblClick{}}, nullptr};
}

BarReaction CommandBarInput::CaptureLost() {
  BarReaction reaction;
  mouseHeld_ = false;
  LetGo(EndPress(), reaction);
  return reaction;
}

BarReaction CommandBarInput::AccessKeyPress(std::int16_t characterCode) {
  BarReaction reaction;
  const int index = buttons_.IndexFromAccessKey(characterCode);
  const BarButton* button = buttons_.Find(index);
  if (!runMode_ || button == nullptr || !button->Enabled) return reaction;
  if (button->Is(ButtonType::Menu) || button->Is(ButtonType::DropDown)) {
    reaction.effects.emplace_back(BarEffect::PaintButton{index, RedrawLook(*button)});
    PlayClick(reaction);
    reaction.effects.emplace_back(BarEffect::RaiseButton{BarButtonEvent::Dropdown, index});
  } else {
    // Neither drawn nor flipped, a toggle button either: the container that gives one a key sets its state.
    reaction.effects.emplace_back(BarEffect::RaiseButton{BarButtonEvent::ButtonClicked, index});
  }
  return reaction;
}

BarReaction CommandBarInput::DoDefaultAction(int index, ButtonPart part) {
  BarReaction reaction;
  const BarButton* button = buttons_.Find(index);
  if (!runMode_ || button == nullptr || !button->Enabled || button->Is(ButtonType::Separator))
    return reaction;
  if (button->Is(ButtonType::Menu) || part == ButtonPart::Arrow) {
    OpenDropdown({button->Id, part, true}, reaction);
    return reaction;
  }
  PlayClick(reaction);
  Click(index, reaction);
  return reaction;
}

BarReaction CommandBarInput::Freeze() {
  BarReaction reaction;
  frozen_ = true;
  HideTip(reaction);
  return reaction;
}

BarReaction CommandBarInput::Thaw() {
  frozen_ = false;
  return {{BarEffect::PaintBar{}}, nullptr};
}

/// Forgets the press, a dead one too, and returns it.
CommandBarInput::Press CommandBarInput::EndPress() {
  deadPress_ = false;
  return std::exchange(pressed_, {});
}

/// Draws a button that was pressed as it looks without the press. A frozen bar is painted as a whole when it
/// thaws, and a button with an open menu when the menu is closed.
void CommandBarInput::LetGo(const Press& press, BarReaction& reaction) const {
  if (press.over && !frozen_ && press.button != droppedDown_.button) {
    PaintCurrent(buttons_.IndexOf(press.button), reaction);
  }
}

void CommandBarInput::ReleaseMouse(BarReaction& reaction) {
  if (std::exchange(mouseHeld_, false)) reaction.effects.emplace_back(BarEffect::ReleaseCapture{});
}

void CommandBarInput::PlayClick(BarReaction& reaction) const {
  if (properties_.SoundEffects) reaction.effects.emplace_back(BarEffect::PlayClick{});
}

void CommandBarInput::HideTip(BarReaction& reaction) {
  if (std::exchange(tipShown_, false)) reaction.effects.emplace_back(BarEffect::HideTip{});
}

void CommandBarInput::PaintCurrent(int index, BarReaction& reaction) const {
  if (const BarButton* button = buttons_.Find(index)) {
    reaction.effects.emplace_back(BarEffect::PaintButton{index, CurrentLook(*button)});
  }
}

ButtonLook CommandBarInput::CurrentLook(const BarButton& button) const {
  const bool hot = button.Id == hot_;
  if (button.Id == droppedDown_.button) return PressedLook(button, droppedDown_.part, hot);
  if (button.Id == pressed_.button && pressed_.over) return PressedLook(button, pressed_.part, hot);
  // A toggle button that is on rests sunken, under the mouse as well.
  return hot && button.Enabled && !button.IsToggledOn() ? RaisedLook() : RedrawLook(button);
}

}  // namespace snip
