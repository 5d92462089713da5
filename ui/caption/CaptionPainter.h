#pragma once

#include <windows.h>

#include <optional>

#include "platform/Handle.h"
#include "ui/caption/CaptionLayout.h"

namespace snip {

/// Paints title bars: a horizontal gradient, the window's icon and its text, but not the buttons, which stay
/// the system's. One painter serves all windows of a thread.
class CaptionPainter {
 public:
  struct Colors {
    COLORREF start = 0;  ///< At the left end.
    COLORREF end = 0;    ///< At the right end.
    COLORREF text = RGB(255, 255, 255);
  };

  /// Reads the metrics.
  CaptionPainter();

  Colors active{.end = 0xFF0000};
  Colors inactive{.end = 0xC0C0C0};

  /// Reads the fonts of the system's title bars and whether high contrast is on. Must be called again when
  /// the user has changed them.
  void ReadMetrics();

  /// False while high contrast is on: colours of our own would defeat it, so that the system's title bars
  /// stay as they are.
  bool Enabled() const { return !highContrast_; }

  /// Whether the window has a title bar that can be painted now; a minimised one is left to the system.
  bool CanPaint(HWND window) const;

  /// What `Paint` covers, in pixels of the screen: the title bar without its buttons.
  UniqueRegion Covered(HWND window) const;

  /// Paints the title bar. `icon` may be null; whether it is shown depends on the kind of frame as well.
  void Paint(HWND window, bool isActive, HICON icon) const;

 private:
  void PaintGradient(HDC dc, const CaptionLayout& layout, const Colors& colors) const;

  UniqueFont font_;
  UniqueFont smallFont_;
  bool highContrast_ = false;
};

}  // namespace snip
