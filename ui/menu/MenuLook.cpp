#include "ui/menu/MenuLook.h"

namespace snip {
namespace {

/// The hot item looks like a raised button: in a docked menu its picture, in a torn-off one its whole row.
/// The picture of a disabled item has no frame, because it cannot be pressed.
MenuFrame FrameOf(const MenuItemState& item) {
  if (item.floating) return MenuFrame::Row;
  return item.enabled && item.hasPicture ? MenuFrame::PictureCell : MenuFrame::None;
}

}  // namespace

MenuItemLook LookOf(const MenuItemState& item) {
  MenuItemLook look;
  look.embossed = !item.enabled;
  look.frame = FrameOf(item);
  if (item.hot && !item.floating) look.text = MenuColor::HighlightText;
  if (item.hot && item.enabled) look.background = MenuColor::Highlight;
  if (item.hot || !item.enabled) {
    look.light = MenuColor::ButtonHighlight;
    look.dark = MenuColor::ButtonShadow;
  }
  return look;
}

MenuColor DragBarColor(bool hot, bool floating) {
  return hot || floating ? MenuColor::ActiveCaption : MenuColor::InactiveCaption;
}

}  // namespace snip
