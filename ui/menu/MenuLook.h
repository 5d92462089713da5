#pragma once

namespace snip {

/// The system colours that menus are drawn in, with GetSysColor's numbers.
enum class MenuColor {
  ActiveCaption = 2,
  InactiveCaption = 3,
  Highlight = 13,
  HighlightText = 14,
  ButtonFace = 15,
  ButtonShadow = 16,
  ButtonText = 18,
  ButtonHighlight = 20,
};

/// What gets the frame of an item: a line in the light colour on the left and top, one in the dark colour on
/// the right and bottom, just inside. An enabled item that is not hot has it in the background's colour.
enum class MenuFrame { None, PictureCell, Row };

/// How an item that is not a separator is drawn; MenuLayout.h says where. First its row is filled, then comes
/// the frame, then the picture, then the caption.
struct MenuItemLook {
  MenuColor text = MenuColor::ButtonText;        ///< Of a caption that is not embossed.
  MenuColor background = MenuColor::ButtonFace;  ///< The whole row is filled with it.
  MenuColor light = MenuColor::ButtonFace;
  MenuColor dark = MenuColor::ButtonFace;
  MenuFrame frame = MenuFrame::None;
  /// A disabled item: its caption is drawn in the light colour one pixel right and down, then in the dark
  /// colour in its place; its picture likewise, embossed in the button highlight and shadow.
  bool embossed = false;
  friend bool operator==(const MenuItemLook&, const MenuItemLook&) = default;
};

/// What the look of an item depends on.
struct MenuItemState {
  bool hot = false;
  bool enabled = true;
  bool hasPicture = false;
  bool floating = false;
};

MenuItemLook LookOf(const MenuItemState& item);

MenuColor DragBarColor(bool hot, bool floating);

}  // namespace snip
