#pragma once

#include <functional>
#include <optional>

#include "platform/AccessibleList.h"
#include "platform/Handle.h"
#include "platform/RowScrollBar.h"
#include "platform/Window.h"
#include "ui/find/PaletteRows.h"

namespace snip {

/// The palette's list: paints the rows that are in sight, and has one selected. Rows count from 0.
class FoundList : public Window, private AccessibleItems {
 public:
  struct Events {
    std::function<void()> selected;   ///< The user has selected another row.
    std::function<void()> activated;  ///< A row was double-clicked.
  };

  /// `rows` must outlive this.
  FoundList(const PaletteRows& rows, Events events);
  ~FoundList() override;

  bool CreateIn(HWND parent, int id, HFONT font);

  /// There are other rows; selects that one, or none for -1, and scrolls to it. `stays` says that it is the
  /// selected one of before, which keeps its height in the window.
  void TakeRows(int selected, bool stays = false);
  int selected() const { return selected_; }
  /// Selects what a key goes to; false if it is no such key.
  bool MoveByKey(WPARAM key);
  /// Selects a row and tells of it, if it is another one.
  void Select(int row);

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  LONG WholeRole() const override { return ROLE_SYSTEM_LIST; }
  int AccessibleCount() const override { return rows_.count(); }
  AccessibleItem DescribeItem(int item) const override;
  std::optional<int> FocusedItem() const override;
  std::optional<int> SelectedItem() const override { return FocusedItem(); }
  void DoDefaultAction(int item) override;

  int RowsInSight() const;
  int RowAt(int y) const;
  void ScrollTo(int top);
  void ShowSelected();
  void UpdateScrollBar() const;
  void Paint();
  void PaintRow(HDC dc, int row, const RECT& place) const;

  const PaletteRows& rows_;
  Events events_;
  AccessibleList accessible_{*this, *this};
  HFONT font_ = nullptr;
  UniqueFont heading_;
  UniqueFont marked_;
  int rowHeight_ = 1;  ///< Pixels.
  int top_ = 0;        ///< The first row in sight.
  int selected_ = -1;
  RowScrollBar scrollBar_;
};

}  // namespace snip
