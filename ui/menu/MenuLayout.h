#pragma once

#include <vector>

#include "platform/Geometry.h"
#include "ui/menu/MenuItems.h"
#include "ui/menu/MenuMetrics.h"

namespace snip {

/// The hot item's number while no item is hot.
namespace MenuHot {
constexpr int kDragBar = -1;
constexpr int kNothingYet = -2;  ///< The menu was just opened.
constexpr int kNoItem = -10;     ///< The pointer is on neither an item nor the drag bar.
}  // namespace MenuHot

struct MenuMode {
  bool allowDetach = false;  ///< Shows the drag bar.
  bool floating = false;     ///< Torn off. Implies `allowDetach`: only the drag bar tears off.
  friend bool operator==(const MenuMode&, const MenuMode&) = default;
};

/// Where the parts of an open menu are. Points and rectangles are client pixels; a rectangle is one to fill,
/// and lines are drawn just inside it.
/// It is a snapshot: make a new one whenever the items, the font, the mode or the size of the window change.
class MenuLayout {
 public:
  /// `client` is in pixels.
  MenuLayout(const MenuItems& items, const MenuMetrics& metrics, const MenuMode& mode, Size client);

  int iCount() const { return static_cast<int>(rows_.size()); }

  bool Contains(Point at) const;

  /// The index of the item at a point, MenuHot::kDragBar or MenuHot::kNoItem.
  ///
  /// With a drag bar, the rows that are hit are a little below those that are painted: by one pixel on a
  /// docked menu at 96 dpi and two on a torn-off one (see HitTop).
  int HitTest(Point at) const;

  /// Empty without a drag bar.
  Rect DragBar() const;
  /// In the drag bar of a torn-off menu; empty in a docked one.
  Rect CloseBox() const;
  /// Whether a click on the drag bar closes the menu there: in one column more than the close box is wide.
  bool OnCloseBox(Point at) const;
  /// Whether the menu can be dragged there: on the drag bar except its first column and the close box. A
  /// docked menu leaves out the columns of the close box, too.
  bool OnDragHandle(Point at) const;

  /// The row of an item as it is painted. A separator's row is six pixels high on every screen.
  Rect Row(int index) const;
  /// The square at the row's left around the picture.
  Rect PictureCell(int index) const;
  Rect PictureArea(int index) const;
  /// The caption is one line, vertically centred in this.
  Rect Caption(int index) const;

  /// The two lines of a separator, each one pixel high.
  struct SeparatorLines {
    Rect shadow;
    Rect highlight;
  };
  SeparatorLines Separator(int index) const;

 private:
  /// Twips below the beginning of the first row.
  struct RowPlace {
    int top = 0;
    bool separator = false;
  };

  int ItemsTop() const;
  int DragBarHeight() const;
  double HitTop(const RowPlace& row) const;
  const RowPlace& At(int index) const { return rows_.at(static_cast<std::size_t>(index)); }

  MenuMetrics metrics_;
  MenuMode mode_;
  Size client_;
  std::vector<RowPlace> rows_;
};

}  // namespace snip
