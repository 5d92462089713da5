#pragma once

#include <windows.h>

#include <optional>

namespace snip {

/// The vertical scroll bar of a window that has some of its rows in sight. Rows count from 0.
class RowScrollBar {
 public:
  /// Shows where the rows in sight are; grey when all of them are.
  static void Show(HWND window, int top, int inSight, int rows);

  /// The row that a message of the bar or the wheel wants to be the first in sight, which need not be there;
  /// nothing for other messages.
  std::optional<int> Wanted(HWND window, UINT message, WPARAM wParam);

 private:
  int wheel_ = 0;  ///< What the wheel has turned and no row was scrolled for.
};

}  // namespace snip
