#pragma once

#include <cstdint>
#include <string>

#include "platform/Geometry.h"
#include "platform/Mouse.h"
#include "ui/commandbar/ButtonLook.h"

namespace snip {

using BarMouse = MouseState;

enum class BarMouseEvent { MouseDown, MouseMove, MouseUp };
enum class BarButtonEvent { ButtonClicked, Dropdown, MouseHover, MouseLeave };

/// What CommandBarInput asks of the bar's window, which does it at once.
///
/// In the functions that return something, others act: a container may do anything in an event, change the
/// buttons, run a menu, destroy the bar. They are false when the bar is gone: the caller returns then without
/// touching anything of its own. A caller has its state settled before it calls one, and looks again
/// afterwards; input that comes in between is handled as any other.
class BarPort {
 public:
  virtual ~BarPort() = default;

  /// Erases the button and draws face and edges, in one go.
  virtual void PaintButton(int button, const ButtonLook& look) = 0;
  /// Paints the whole bar.
  virtual void PaintBar() = 0;
  /// The Office 97 event "ToolbarClick".
  virtual void PlayClick() = 0;
  virtual void ShowTip(const std::string& text, Point screen) = 0;
  virtual void HideTip() = 0;
  virtual void StartHoverTimer() = 0;
  virtual void StopHoverTimer() = 0;
  /// The window that has the mouse until then is told at once.
  [[nodiscard]] virtual bool TakeCapture() = 0;
  /// The bar is told itself, with CommandBarInput::CaptureLost.
  virtual void ReleaseCapture() = 0;

  [[nodiscard]] virtual bool Raise(BarMouseEvent event, const BarMouse& mouse) = 0;
  [[nodiscard]] virtual bool Raise(BarButtonEvent event, int button) = 0;
  [[nodiscard]] virtual bool RaiseDblClick() = 0;
};

}  // namespace snip
