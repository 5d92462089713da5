#include "ui/menu/MenuPainter.h"

#include "platform/Drawing.h"
#include "platform/Handle.h"
#include "platform/OleColor.h"
#include "platform/Rects.h"

namespace snip {
namespace {

constexpr OLE_COLOR kPictureMask = 0xC0C0C0;

COLORREF ColorOf(MenuColor color) {
  return GetSysColor(static_cast<int>(color));
}

}  // namespace

void MenuPainter::Draw(Size client) const {
  FillArea(dc_, {0, 0, client.width, client.height}, ColorOf(MenuColor::ButtonFace));
  for (int index = 0; index < items_.iCount(); ++index) DrawItem(index);
  DrawDragBar();
  // In colour schemes where menus and windows have the same colour, only a frame separates them.
  const RECT frame{0, 0, client.width, client.height};
  if (ColorOf(MenuColor::ButtonFace) == GetSysColor(COLOR_WINDOW)) {
    FrameRect(dc_, &frame, GetSysColorBrush(COLOR_WINDOWFRAME));
  }
}

void MenuPainter::DrawItem(int index) const {
  const MenuItem& item = *items_.Find(index);
  if (item.IsSeparator()) {
    DrawSeparator(index);
    return;
  }
  const MenuItemLook look = LookOf({.hot = view_.hot == index,
                                    .enabled = item.Enabled,
                                    .hasPicture = item.Picture != nullptr,
                                    .floating = view_.mode.floating});
  FillArea(dc_, layout_.Row(index), ColorOf(look.background));
  DrawFrame(index, look);
  if (item.Picture) DrawPicture(index, *item.Picture, look.embossed);
  DrawCaption(index, item.Caption, look);
}

void MenuPainter::DrawSeparator(int index) const {
  const MenuLayout::SeparatorLines lines = layout_.Separator(index);
  FillArea(dc_, lines.shadow, ColorOf(MenuColor::ButtonShadow));
  FillArea(dc_, lines.highlight, ColorOf(MenuColor::ButtonHighlight));
}

void MenuPainter::DrawFrame(int index, const MenuItemLook& look) const {
  if (look.frame == MenuFrame::None) return;
  const Rect area = look.frame == MenuFrame::Row ? layout_.Row(index) : layout_.PictureCell(index);
  DrawEdgeLines(dc_, area, ColorOf(look.light), ColorOf(look.dark));
}

void MenuPainter::DrawPicture(int index, const Picture& picture, bool embossed) const {
  const Rect at = layout_.PictureArea(index);
  if (embossed) {
    effects_.PaintDisabledStdPic(dc_, at.left, at.top, at.width, at.height, &picture, 0, 0, kPictureMask,
                                 SystemColor(COLOR_BTNHIGHLIGHT), SystemColor(COLOR_BTNSHADOW));
  } else {
    effects_.PaintTransparentStdPic(dc_, at.left, at.top, at.width, at.height, &picture, 0, 0, kPictureMask);
  }
}

void MenuPainter::DrawCaption(int index, const std::string& caption, const MenuItemLook& look) const {
  const Rect area = layout_.Caption(index);
  if (look.embossed) {
    DrawEtchedLabel(dc_, caption, area, view_.font, ColorOf(look.light), ColorOf(look.dark), DT_VCENTER);
  } else {
    DrawLabel(dc_, caption, area, view_.font, ColorOf(look.text), DT_VCENTER);
  }
}

void MenuPainter::DrawDragBar() const {
  if (!view_.mode.allowDetach) return;
  FillArea(dc_, layout_.DragBar(),
           ColorOf(DragBarColor(view_.hot == MenuHot::kDragBar, view_.mode.floating)));
  if (!view_.mode.floating) return;
  RECT bounds = ToRECT(layout_.CloseBox());
  DrawFrameControl(dc_, &bounds, DFC_CAPTION, DFCS_CAPTIONCLOSE | (view_.closeBoxPushed ? DFCS_PUSHED : 0U));
}

}  // namespace snip
