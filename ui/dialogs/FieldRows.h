#pragma once

#include "platform/RowScrollBar.h"
#include "platform/Window.h"

namespace snip {

/// A part of a dialog with rows of labels and fields of which only some are in sight. The field that has the
/// focus always is. The dialog gets the fields' notifications as if they were its own.
class FieldRows : public Window {
 public:
  ~FieldRows() override { Destroy(); }

  /// Makes it without the rows' controls, which are added as children, each within its row. `rowHeight` is in
  /// pixels. False when the system refuses.
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
