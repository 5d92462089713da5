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

  /// Its colour during a drag.
  static constexpr COLORREF kSplitDragColor = 0x808080;

  /// `dropped` is called at the end of a drag, with the splitter's left or top edge in client pixels of the
  /// parent.
  Splitter(Divides divides, std::function<void(int edge)> dropped);
  ~Splitter() override;

  /// Acts like a drag by `by` pixels to the right or down.
  void Move(int by) { dropped_(Edge() + by); }

  bool CreateIn(HWND parent, const char* name);

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  /// The coordinate of a mouse message on the axis on which the splitter moves.
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
  HWND above_ = nullptr;  ///< The sibling just above it in the z-order before the drag.
};

}  // namespace snip
