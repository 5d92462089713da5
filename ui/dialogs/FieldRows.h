#pragma once

#include "platform/RowScrollBar.h"
#include "platform/Window.h"

namespace snip {

/// A part of a dialog that scrolls rows of labels and fields. The field with the focus is always in sight.
/// The dialog gets the fields' notifications.
class FieldRows : public Window {
 public:
  ~FieldRows() override { Destroy(); }

  /// Makes the window; the caller adds the controls as children, each within its row. `rowHeight` is in
  /// pixels. False if the window cannot be made.
  bool CreateIn(HWND dialog, const Rect& place, int rowHeight, int rows);

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  int RowsInSight() const { return ClientSize(hWnd()).height / rowHeight_; }
  void ScrollTo(int top);
  void Reveal(HWND control);

  RowScrollBar scrollBar_;
  int rowHeight_ = 1;
  int rows_ = 0;
  int top_ = 0;  ///< The first row in sight, from 0.
};

}  // namespace snip
