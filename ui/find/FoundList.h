#pragma once

#include <functional>
#include <optional>

#include "platform/AccessibleList.h"
#include "platform/Handle.h"
#include "platform/RowScrollBar.h"
#include "platform/Window.h"
#include "ui/find/PaletteRows.h"

namespace snip {

/// The palette's list, with one selected row. It paints only the visible rows. Rows count from 0.
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

  /// The rows have changed: selects that row, or none for -1, and scrolls to it. With `stays` the row is the
  /// one that was selected before, and keeps its place on the screen.
  void TakeRows(int selected, bool stays = false);
  int selected() const { return selected_; }
  /// Moves the selection by a key; false if the key does not move it.
  bool MoveByKey(WPARAM key);
  /// Selects a row and raises `selected`, if it is not selected already.
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
  int top_ = 0;        ///< The first visible row.
  int selected_ = -1;
  RowScrollBar scrollBar_;
};

}  // namespace snip
