#pragma once

#include <cstdint>
#include <optional>

#include "platform/Geometry.h"
#include "ui/commandbar/BarPort.h"
#include "ui/commandbar/ButtonLook.h"
#include "ui/commandbar/CommandBarButtons.h"
#include "ui/commandbar/CommandBarProperties.h"

namespace snip {

/// How the bar follows the mouse and the keyboard, without a window: what it asks of one goes through a
/// BarPort.
///
/// A button is flat, raised while the mouse is on it (as the hover timer sees it), sunken while it is pressed
/// with the pointer over it, and raised again when it is released there, which clicks it. The hover timer
/// makes a button hot, or a press that comes before it, and only a hot button can be clicked.
///
/// The bar does not ask which mouse button it is: each of them presses.
class CommandBarInput {
 public:
  /// After so many ticks on one button its tip is shown: after 0.44 seconds.
  static constexpr int kTicksToTip = 8;

  /// Reads the SoundEffects property each time a button could sound.
  CommandBarInput(CommandBarButtons& buttons, const CommandBarProperties& properties, BarPort& port)
      : buttons_(buttons), properties_(properties), port_(port) {}
  CommandBarInput(const CommandBarInput&) = delete;
  CommandBarInput& operator=(const CommandBarInput&) = delete;

  /// The bar is shown by a container in run mode or at design time. Until it is, and at design time, no
  /// timer runs and the bar shows no buttons, so that nothing can be hovered or pressed; the mouse events
  /// alone are raised.
  void Show(bool runMode);

  /// One tick of the hover timer. `screen` is the cursor; `client` is the same place in client pixels when
  /// the window under the cursor is the bar, or the tip that the bar itself shows: it comes up right under
  /// the cursor and must not count as having left the button. Otherwise `client` is empty.
  void tHitTest_Timer(std::optional<Point> client, Point screen);

  void MouseDown(const BarMouse& mouse);
  void MouseMove(const BarMouse& mouse);
  void MouseUp(const BarMouse& mouse);
  /// The second press of a double click, which the platform reports instead of a mouse-down. It presses
  /// nothing, so that its release clicks nothing.
  void DblClick();
  /// The mouse went to another window in mid-press, to a menu for example: the press is cancelled.
  void CaptureLost();

  /// An access key, by the code of its lower-case character. It is the first button with this key or none: a
  /// disabled one ends the search without effect.
  void AccessKeyPress(std::int16_t characterCode);

  /// What a click on the button would do, for assistive programs: sounds, flips a toggle button, raises
  /// `ButtonClicked` (or `Dropdown` of a menu button or an arrow), but no mouse events. Needs no hovering.
  void DoDefaultAction(int index, ButtonPart part = ButtonPart::Push);

  /// While frozen the bar does not follow the mouse, and a button whose menu was open keeps the look it has.
  void Freeze();
  void Thaw();

  int HotButton() const { return buttons_.IndexOf(hot_); }
  int PressedButton() const { return buttons_.IndexOf(pressed_.button); }
  bool InRunMode() const { return runMode_; }

 private:
  /// A button that the mouse is held on.
  struct Press {
    ButtonId button = ButtonId::None;
    ButtonPart part = ButtonPart::Push;
    bool over = false;  ///< The pointer is over the button, which is drawn pressed.
  };

  bool Follow(ButtonId hitId);
  void Rest(int index, Point screen);
  bool EnterButton(ButtonId id);
  void PressAt(Point at);
  void DragTo(int hit);
  bool Release(const Press& press, Point at);
  bool Click(int index);
  void OpenDropdown(Press press);
  Press EndPress();
  void LetGo(const Press& press) const;
  void ReleaseMouse();
  void PlayClick() const;
  void HideTip();
  void PaintCurrent(int index) const;
  ButtonLook CurrentLook(const BarButton& button) const;

  CommandBarButtons& buttons_;
  const CommandBarProperties& properties_;
  BarPort& port_;
  // Buttons are kept by identity, as the container may remove and move them at any time.
  ButtonId hot_ = ButtonId::None;
  Press pressed_;
  /// The button whose `Dropdown` event is being handled: it keeps its pressed look until the menu is closed.
  Press droppedDown_;
  bool mouseHeld_ = false;  ///< From a mouse-down to its release.
  bool deadPress_ = false;  ///< The held press began on no usable button: hovering waits for the release.
  bool tipShown_ = false;
  bool frozen_ = false;
  bool runMode_ = false;
  std::int16_t hoverTicks_ = 0;
};

}  // namespace snip
