#pragma once

#include <windows.h>

#include <optional>

#include "ui/editor/UnitSelection.h"

namespace snip {

/// Selects words by double clicks and lines by triple clicks in a rich-edit control, and more of them while
/// the mouse is dragged. It does so without the control, which on Windows selects a word with the blanks
/// behind it, and in Wine 8 takes text elsewhere when the word is the last one of its line.
class MouseSelection {
 public:
  /// Looks at each message of the control first; true when the control is not to see it.
  bool Filter(HWND control, UINT message, WPARAM wParam, LPARAM lParam);

 private:
  struct Press {
    LONG time;  ///< In milliseconds, as messages tell it.
    POINT place;
  };

  bool IsThirdPress(POINT place) const;
  bool Start(HWND control, SelectionUnit unit, POINT place);
  /// Selects up to a place in client pixels, or to the nearest that can be seen.
  void ExtendTo(HWND control, POINT place) const;
  void ScrollToPointer(HWND control) const;
  void Stop(HWND control);

  std::optional<UnitSelection> selection_;  ///< While the mouse button is held.
  std::optional<Press> doubleClick_;
};

}  // namespace snip
