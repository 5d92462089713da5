#include "ui/commandbar/CommandBarInput.h"

#include <limits>
#include <tuple>
#include <utility>

namespace snip {

void CommandBarInput::Show(bool runMode) {
  runMode_ = runMode;
  if (runMode_) {
    port_.StartHoverTimer();
    return;
  }
  EndPress();
  hot_ = ButtonId::None;
  HideTip();
  ReleaseMouse();
  port_.StopHoverTimer();
}

void CommandBarInput::tHitTest_Timer(std::optional<Point> client, Point screen) {
  if (!runMode_ || frozen_) return;
  const int hit = client ? buttons_.BtnFromPoint(client->x, client->y) : -1;
  if (deadPress_) return;
  if (buttons_.IdOf(hit) == hot_) {
    Rest(hit, screen);
  } else {
    std::ignore = Follow(buttons_.IdOf(hit));
  }
}

/// The mouse came from the hot button, or from none, to another, or to none. False when the bar is gone.
bool CommandBarInput::Follow(ButtonId hitId) {
  HideTip();
  hoverTicks_ = 0;
  const int left = HotButton();  // -1 also when it was removed: then there is no button left to name
  hot_ = ButtonId::None;
  if (left >= 0) {
    if (left == PressedButton()) pressed_.over = false;
    if (!buttons_.Find(left)->IsToggledOn()) PaintCurrent(left);
    // Raised for every button that was hot, a disabled one included: a container clears by it what it shows
    // about the button.
    if (!port_.Raise(BarButtonEvent::MouseLeave, left)) return false;
    // While the container handled MouseLeave, another tick may have found the button under the mouse already,
    // or the bar may have stopped following the mouse.
    if (hot_ != ButtonId::None || !runMode_ || frozen_ || deadPress_) return true;
  }
  return EnterButton(hitId);
}

/// The mouse rests on the hot button, or on none.
void CommandBarInput::Rest(int index, Point screen) {
  // The count does not start again by itself: the tip is shown once in a visit.
  if (hoverTicks_ < std::numeric_limits<std::int16_t>::max()) ++hoverTicks_;
  const BarButton* button = buttons_.Find(index);
  if (hoverTicks_ != kTicksToTip || button == nullptr || button->DisplayType != DisplayType::Picture) return;
  tipShown_ = true;
  port_.ShowTip(button->Caption, screen);
}

/// False when the bar is gone.
bool CommandBarInput::EnterButton(ButtonId id) {
  const int index = buttons_.IndexOf(id);
  if (index < 0) return true;
  hot_ = id;
  if (!buttons_.Find(index)->Enabled) return true;
  PaintCurrent(index);
  return port_.Raise(BarButtonEvent::MouseHover, index);
}

void CommandBarInput::MouseDown(const BarMouse& mouse) {
  // The timer may not have seen the mouse yet: a finger comes and goes within one tick.
  if (runMode_ && !frozen_ && !deadPress_) {
    const ButtonId hit = buttons_.IdOf(buttons_.BtnFromPoint(mouse.at.x, mouse.at.y));
    if (hit != hot_ && !Follow(hit)) return;
  }
  if (runMode_) {
    mouseHeld_ = true;
    if (!port_.TakeCapture()) return;
  }
  if (port_.Raise(BarMouseEvent::MouseDown, mouse)) PressAt(mouse.at);
}

void CommandBarInput::PressAt(Point at) {
  HideTip();
  // At design time nothing is pressed; and the container's MouseDown may have taken the mouse away, by a
  // message box for example.
  if (!mouseHeld_) return;

  const Press before = EndPress();
  const int hit = buttons_.BtnFromPoint(at.x, at.y);
  const BarButton* button = buttons_.Find(hit);
  // A second mouse button pressed during a press begins another one.
  if (buttons_.IdOf(hit) != before.button) LetGo(before);
  if (button == nullptr || !button->Enabled) {
    deadPress_ = true;
    return;
  }

  pressed_ = {button->Id, button->PartAt(at.x), true};
  if (pressed_.part == ButtonPart::Arrow || button->Is(ButtonType::Menu)) {
    OpenDropdown(pressed_);
  } else {
    PaintCurrent(hit);
    PlayClick();
  }
}

/// Draws a button pressed, raises its `Dropdown`, and draws it at rest once the menu is closed.
void CommandBarInput::OpenDropdown(Press press) {
  const int index = buttons_.IndexOf(press.button);
  const Press outer = std::exchange(droppedDown_, press);  // a menu may be opened while another is open
  PaintCurrent(index);
  if (!port_.Raise(BarButtonEvent::Dropdown, index)) return;
  droppedDown_ = outer;
  if (pressed_.button == press.button) pressed_.over = false;
  const int rested = buttons_.IndexOf(press.button);
  if (rested >= 0 && !frozen_) port_.PaintButton(rested, RedrawLook(*buttons_.Find(rested)));
}

void CommandBarInput::MouseMove(const BarMouse& mouse) {
  if (!port_.Raise(BarMouseEvent::MouseMove, mouse) || !runMode_) return;
  const int hit = buttons_.BtnFromPoint(mouse.at.x, mouse.at.y);
  if (mouse.Button != 0) {
    DragTo(hit);
    return;
  }
  // No mouse button is held: a press that is still known was released where the bar could not see it.
  const Press press = EndPress();
  ReleaseMouse();
  LetGo(press);
}

void CommandBarInput::DragTo(int hit) {
  const BarButton* button = buttons_.Find(PressedButton());
  if (button == nullptr) return;
  pressed_.over = hit == PressedButton() && button->Enabled;
  PaintCurrent(PressedButton());
}

void CommandBarInput::MouseUp(const BarMouse& mouse) {
  const Press press = EndPress();
  ReleaseMouse();
  if (runMode_ && !Release(press, mouse.at)) return;
  // Unlike the other mouse events this one comes last: the click first, then the release that made it.
  std::ignore = port_.Raise(BarMouseEvent::MouseUp, mouse);
}

/// False when the bar is gone.
bool CommandBarInput::Release(const Press& press, Point at) {
  const int hit = buttons_.BtnFromPoint(at.x, at.y);
  const BarButton* button = buttons_.Find(hit);
  if (button != nullptr && button->Enabled && button->Id == hot_ && button->Id == press.button &&
      press.part == ButtonPart::Push) {
    return Click(hit);
  }
  LetGo(press);
  return true;
}

/// False when the bar is gone.
bool CommandBarInput::Click(int index) {
  const BarButton& button = *buttons_.Find(index);
  // The redraw that a changed State asks for is the paint below: the button as it looks under the mouse.
  if (button.Is(ButtonType::Toggle)) buttons_.SetState(index, button.IsToggledOn() ? 0 : 1);
  if (button.Is(ButtonType::DropDown)) buttons_.SetState(index, 0);
  PaintCurrent(index);
  return port_.Raise(BarButtonEvent::ButtonClicked, index);
}

void CommandBarInput::DblClick() {
  std::ignore = port_.RaiseDblClick();
}

void CommandBarInput::CaptureLost() {
  mouseHeld_ = false;
  LetGo(EndPress());
}

void CommandBarInput::AccessKeyPress(std::int16_t characterCode) {
  const int index = buttons_.IndexFromAccessKey(characterCode);
  const BarButton* button = buttons_.Find(index);
  if (!runMode_ || button == nullptr || !button->Enabled) return;
  const bool dropsDown = button->Is(ButtonType::Menu) || button->Is(ButtonType::DropDown);
  // A button without a menu is neither drawn nor flipped, a toggle button either: the container that gives
  // one a key sets its state.
  if (dropsDown) {
    port_.PaintButton(index, RedrawLook(*button));
    PlayClick();
  }
  std::ignore = port_.Raise(dropsDown ? BarButtonEvent::Dropdown : BarButtonEvent::ButtonClicked, index);
}

void CommandBarInput::DoDefaultAction(int index, ButtonPart part) {
  const BarButton* button = buttons_.Find(index);
  if (!runMode_ || button == nullptr || !button->Enabled || button->Is(ButtonType::Separator)) return;
  if (button->Is(ButtonType::Menu) || part == ButtonPart::Arrow) {
    OpenDropdown({button->Id, part, true});
    return;
  }
  PlayClick();
  std::ignore = Click(index);
}

void CommandBarInput::Freeze() {
  frozen_ = true;
  HideTip();
}

void CommandBarInput::Thaw() {
  frozen_ = false;
  port_.PaintBar();
}

/// Forgets the press, a dead one too, and returns it.
CommandBarInput::Press CommandBarInput::EndPress() {
  deadPress_ = false;
  return std::exchange(pressed_, {});
}

/// Draws a button that was pressed as it looks without the press. A frozen bar is painted as a whole when it
/// thaws, and a button with an open menu when the menu is closed.
void CommandBarInput::LetGo(const Press& press) const {
  if (press.over && !frozen_ && press.button != droppedDown_.button)
    PaintCurrent(buttons_.IndexOf(press.button));
}

void CommandBarInput::ReleaseMouse() {
  if (std::exchange(mouseHeld_, false)) port_.ReleaseCapture();
}

void CommandBarInput::PlayClick() const {
  if (properties_.SoundEffects) port_.PlayClick();
}

void CommandBarInput::HideTip() {
  if (std::exchange(tipShown_, false)) port_.HideTip();
}

void CommandBarInput::PaintCurrent(int index) const {
  if (const BarButton* button = buttons_.Find(index)) port_.PaintButton(index, CurrentLook(*button));
}

ButtonLook CommandBarInput::CurrentLook(const BarButton& button) const {
  const bool hot = button.Id == hot_;
  if (button.Id == droppedDown_.button) return PressedLook(button, droppedDown_.part, hot);
  if (button.Id == pressed_.button && pressed_.over) return PressedLook(button, pressed_.part, hot);
  // A toggle button that is on rests sunken, under the mouse as well.
  return hot && button.Enabled && !button.IsToggledOn() ? RaisedLook() : RedrawLook(button);
}

}  // namespace snip
