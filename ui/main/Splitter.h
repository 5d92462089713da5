#pragma once

#include <windows.h>

#include <functional>

#include "platform/AccessibleList.h"
#include "platform/Window.h"
#include "ui/main/SplitterDrag.h"

namespace snip {

/// The bar between two parts of the window, to be dragged by the mouse.
class Splitter : public Window {
 public:
  enum class Divides { Columns, Rows };

  /// The colour it takes while it is dragged: grey.
  static constexpr COLORREF kSplitDragColor = 0x808080;

  /// `dropped` is called when it was let go, with its left or top edge in pixels of the parent.
  Splitter(Divides divides, std::function<void(int edge)> dropped);
  ~Splitter() override;

  /// Drops it `by` pixels further right or down.
  void Move(int by) { dropped_(Edge() + by); }

  bool CreateIn(HWND parent, const char* name);

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  int Along(LPARAM lParam) const;
  int Edge() const;
  void MoveEdge(int edge);
  void React(SplitterDrag::Reaction reaction);
  void CancelDrag();
  void GoBeneath();

  AccessiblePart accessible_{*this, ROLE_SYSTEM_SEPARATOR};
  Divides divides_;
  std::function<void(int edge)> dropped_;
  SplitterDrag drag_;
  int startEdge_ = 0;
  HWND above_ = nullptr;  ///< The sibling that it lay beneath before the drag.
};

}  // namespace snip
