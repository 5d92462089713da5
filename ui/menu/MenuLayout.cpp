#include "ui/menu/MenuLayout.h"

#include <algorithm>

namespace snip {
namespace {

// Twips.
constexpr int kDockedDragBar = 90;
constexpr int kFloatingDragBar = 210;
constexpr int kDockedItemsTop = 165;
constexpr int kFloatingItemsTop = 285;
constexpr int kSeparatorMargin = 30;

// Pixels.
constexpr int kSeparatorRow = 6;
constexpr int kSeparatorShadowTop = 2;
constexpr int kSeparatorHighlightTop = 3;

// Pixels at 96 dpi.
constexpr int kCloseColumns = 14;
constexpr int kCloseBoxSide = 12;
constexpr int kCloseBoxTop = 1;
constexpr int kPictureSide = 16;
/// The side by which pictures are centred, so that they are one pixel right of and below the middle.
constexpr int kCentredSide = 14;
constexpr int kFloatingTextShift = 2;

}  // namespace

MenuLayout::MenuLayout(const MenuItems& items, const MenuMetrics& metrics, const MenuMode& mode, Size client)
    : metrics_(metrics), mode_(mode), client_(client) {
  rows_.reserve(items.All().size());
  int top = 0;
  for (const MenuItem& item : items.All()) {
    rows_.push_back({top, item.IsSeparator()});
    top += metrics_.ItemHeight - (item.IsSeparator() ? metrics_.SeparatorDelta : 0);
  }
}

bool MenuLayout::Contains(Point at) const {
  return at.x >= 0 && at.x < client_.width && at.y >= 0 && at.y < client_.height;
}

int MenuLayout::HitTest(Point at) const {
  if (at.x < 0 || at.x >= client_.width) return MenuHot::kNoItem;
  const double y = at.y * metrics_.twips.y;
  if (y >= 0 && y < DragBarHeight()) return MenuHot::kDragBar;

  const double below = y - ItemsTop();
  for (int index = 0; index < iCount(); ++index) {
    const RowPlace& row = At(index);
    const double top = HitTop(row);
    const double bottom = top + (row.separator ? kSeparatorHeight : metrics_.ItemHeight);
    if (below >= top && below < bottom) return index;
  }
  return MenuHot::kNoItem;
}

/// The top of a row for hit tests, in twips below the first row. With a drag bar it is lower than the painted
/// row: the *pixels* above the items are added as if they were twips. Users are accustomed to that.
double MenuLayout::HitTop(const RowPlace& row) const {
  return row.top + (mode_.allowDetach ? ItemsTop() / metrics_.twips.y : 0);
}

Rect MenuLayout::DragBar() const {
  if (!mode_.allowDetach) return {};
  return {0, 0, client_.width, metrics_.twips.ToPixelsY(DragBarHeight())};
}

Rect MenuLayout::CloseBox() const {
  if (!mode_.floating) return {};
  const int side = metrics_.Scaled(kCloseBoxSide);
  return {client_.width - metrics_.Scaled(kCloseColumns), metrics_.Scaled(kCloseBoxTop), side, side};
}

bool MenuLayout::OnCloseBox(Point at) const {
  return mode_.floating && HitTest(at) == MenuHot::kDragBar &&
         at.x > client_.width - metrics_.Scaled(kCloseColumns);
}

bool MenuLayout::OnDragHandle(Point at) const {
  return HitTest(at) == MenuHot::kDragBar && at.x > 0 &&
         at.x <= client_.width - metrics_.Scaled(kCloseColumns);
}

Rect MenuLayout::Row(int index) const {
  const RowPlace& row = At(index);
  return {0, metrics_.twips.ToPixelsY(ItemsTop() + row.top), client_.width,
          row.separator ? kSeparatorRow : metrics_.ItemHeightPixels()};
}

Rect MenuLayout::PictureCell(int index) const {
  const Rect row = Row(index);
  return {row.left, row.top, row.height, row.height};
}

Rect MenuLayout::PictureArea(int index) const {
  const Rect cell = PictureCell(index);
  const int inset = (cell.width - metrics_.Scaled(kCentredSide)) / 2;
  const int side = metrics_.Scaled(kPictureSide);
  return {cell.left + inset, cell.top + inset, side, side};
}

Rect MenuLayout::Caption(int index) const {
  const Rect row = Row(index);
  // The picture column has the same number of pixels on every screen, but pictures grow with the resolution.
  const int left = std::max(metrics_.TextLeftPixels() + (mode_.floating ? kFloatingTextShift : 0),
                            PictureArea(index).right() + metrics_.Scaled(1));
  return {left, row.top, row.right() - left, row.height};
}

MenuLayout::SeparatorLines MenuLayout::Separator(int index) const {
  const Rect row = Row(index);
  const int margin = metrics_.twips.ToPixelsX(kSeparatorMargin);
  const int width = row.width - 2 * margin;
  return {{margin, row.top + kSeparatorShadowTop, width, 1},
          {margin, row.top + kSeparatorHighlightTop, width, 1}};
}

int MenuLayout::ItemsTop() const {
  if (!mode_.allowDetach) return 0;
  return mode_.floating ? kFloatingItemsTop : kDockedItemsTop;
}

int MenuLayout::DragBarHeight() const {
  if (!mode_.allowDetach) return 0;
  return mode_.floating ? kFloatingDragBar : kDockedDragBar;
}

}  // namespace snip
