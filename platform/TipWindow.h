#pragma once

#include <windows.h>

#include <string>

#include "platform/Geometry.h"

namespace snip {

/// What bars and menus need of a tip window, which their maker gives them.
class TipWindow {
 public:
  virtual ~TipWindow() = default;

  /// Shows `text`; an empty one does nothing. `x` and `y` are the tip's left and top in screen pixels; 0
  /// means the pointer's x, and for a place 20 pixels below the pointer.
  virtual void ShowTip(const std::string& text, int x, int y) = 0;
  virtual void Hide() = 0;
  virtual bool Visible() const = 0;
  /// Whether the tip is all that hides `window` at a point of the screen.
  virtual bool Hides(HWND window, Point screen) = 0;
};

}  // namespace snip
