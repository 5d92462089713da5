#pragma once

#include <windows.h>

#include "platform/Geometry.h"
#include "ui/commandbar/PaintEffects.h"
#include "ui/menu/MenuItems.h"
#include "ui/menu/MenuLayout.h"
#include "ui/menu/MenuLook.h"

namespace snip {

/// What a menu shows besides its items.
struct MenuView {
  MenuMode mode;
  int hot = MenuHot::kNoItem;  ///< The index of an item, or one of MenuHot.
  bool closeBoxPushed = false;
  HFONT font = nullptr;
};

/// Draws a menu onto any device context, in the system's current colours: MenuLayout says where, MenuLook
/// how.
class MenuPainter {
 public:
  MenuPainter(HDC dc, const MenuItems& items, const MenuLayout& layout, const MenuView& view,
              const PaintEffects& effects)
      : dc_(dc), items_(items), layout_(layout), view_(view), effects_(effects) {}

  /// Everything, on a background that fills the whole client area.
  void Draw(Size client) const;

 private:
  void DrawItem(int index) const;
  void DrawSeparator(int index) const;
  void DrawFrame(int index, const MenuItemLook& look) const;
  void DrawPicture(int index, const Picture& picture, bool embossed) const;
  void DrawCaption(int index, const std::string& caption, const MenuItemLook& look) const;
  void DrawDragBar() const;

  HDC dc_;
  const MenuItems& items_;
  const MenuLayout& layout_;
  const MenuView& view_;
  const PaintEffects& effects_;
};

}  // namespace snip
