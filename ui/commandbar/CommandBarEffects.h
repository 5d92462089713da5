#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "platform/Geometry.h"
#include "ui/commandbar/ButtonLook.h"

namespace snip {

/// The arguments of the bar's mouse events, in the host's numbers.
struct BarMouse {
  std::int16_t Button = 0;  ///< 1 left, 2 right, 4 middle; in a move the sum of those that are held.
  std::int16_t Shift = 0;   ///< 1 Shift, 2 Ctrl, 4 Alt, added up.
  Point at;                 ///< Client pixels.
  friend bool operator==(const BarMouse&, const BarMouse&) = default;
};

enum class BarMouseEvent { MouseDown, MouseMove, MouseUp };
enum class BarButtonEvent { ButtonClicked, Dropdown, MouseHover, MouseLeave };

/// What CommandBarInput asks of the bar's window.
namespace BarEffect {

/// Erase the button and draw face and edges, in one go.
struct PaintButton {
  int button = -1;
  ButtonLook look;
  friend bool operator==(const PaintButton&, const PaintButton&) = default;
};

/// Paint the whole bar, at once.
struct PaintBar {
  friend bool operator==(const PaintBar&, const PaintBar&) = default;
};

struct RaiseMouse {
  BarMouseEvent event = BarMouseEvent::MouseMove;
  BarMouse mouse;
  friend bool operator==(const RaiseMouse&, const RaiseMouse&) = default;
};

struct RaiseButton {
  BarButtonEvent event = BarButtonEvent::ButtonClicked;
  int button = -1;
  friend bool operator==(const RaiseButton&, const RaiseButton&) = default;
};

struct RaiseDblClick {
  friend bool operator==(const RaiseDblClick&, const RaiseDblClick&) = default;
};

/// The Office 97 event "ToolbarClick".
struct PlayClick {
  friend bool operator==(const PlayClick&, const PlayClick&) = default;
};

struct ShowTip {
  std::string text;
  Point screen;  ///< Screen pixels.
  friend bool operator==(const ShowTip&, const ShowTip&) = default;
};

struct HideTip {
  friend bool operator==(const HideTip&, const HideTip&) = default;
};

struct TakeCapture {
  friend bool operator==(const TakeCapture&, const TakeCapture&) = default;
};

struct ReleaseCapture {
  friend bool operator==(const ReleaseCapture&, const ReleaseCapture&) = default;
};

struct StartHoverTimer {
  friend bool operator==(const StartHoverTimer&, const StartHoverTimer&) = default;
};

struct StopHoverTimer {
  friend bool operator==(const StopHoverTimer&, const StopHoverTimer&) = default;
};

using Any = std::variant<PaintButton, PaintBar, RaiseMouse, RaiseButton, RaiseDblClick, PlayClick, ShowTip,
                         HideTip, TakeCapture, ReleaseCapture, StartHoverTimer, StopHoverTimer>;

}  // namespace BarEffect

/// The bar's answer to one input.
///
/// The window applies the effects in order. A container may do anything in an event: change the buttons, run
/// a menu, destroy the bar. So what is to be decided after an event is not in the list but in `then`: once
/// the list is applied, a window that still exists calls `then`, if it is set, and treats its answer
/// likewise:
///
///     for (;;) {
///       for (const BarEffect::Any& effect : reaction.effects) Apply(effect);  // stops when destroyed
///       if (destroyed || !reaction.then) break;
///       reaction = reaction.then();
///     }
///
/// In this way every index in a list is that of the button as the list is applied, and `then` of a reaction
/// that raised `Dropdown` runs when the container's menu has closed. Input that comes in between is handled
/// as any other.
struct BarReaction {
  std::vector<BarEffect::Any> effects;
  std::function<BarReaction()> then;
};

}  // namespace snip
