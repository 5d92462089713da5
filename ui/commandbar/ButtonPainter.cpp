#include "ui/commandbar/ButtonPainter.h"

#include <utility>

#include "platform/Drawing.h"
#include "ui/commandbar/ButtonLook.h"
#include "ui/commandbar/DarkPixels.h"

namespace snip {
namespace {

constexpr COLORREF kArrowMask = RGB(0xC0, 0xC0, 0xC0);

RGBQUAD QuadOf(COLORREF color) {
  return {GetBValue(color), GetGValue(color), GetRValue(color), 0};
}

}  // namespace

void ButtonPainter::Erase(const Rect& area) const {
  FillArea(dc_, area, TranslateColor(colors_.back));
}

void ButtonPainter::FillChecked(const Rect& area) const {
  FillArea(dc_, area, Lightened(TranslateColor(colors_.face)));
}

void ButtonPainter::DrawEdge(const Rect& area, const Edge& edge) const {
  DrawEdgeLines(dc_, area, TranslateColor(edge.leftAndTop), TranslateColor(edge.rightAndBottom));
}

void ButtonPainter::DrawCaption(const std::string& caption, const Rect& area, HFONT font,
                                bool enabled) const {
  if (enabled) {
    DrawLabel(dc_, caption, area, font, TranslateColor(colors_.fore));
  } else {
    DrawEtchedLabel(dc_, caption, area, font, TranslateColor(colors_.highlight),
                    TranslateColor(colors_.shadow));
  }
}

void ButtonPainter::DrawPicture(const Picture* picture, const Rect& area, OLE_COLOR mask,
                                bool enabled) const {
  if (picture == nullptr) return;
  if (enabled) {
    effects_.PaintTransparentStdPic(dc_, area.left, area.top, area.width, area.height, picture, 0, 0, mask);
  } else {
    DrawDisabledPicture(*picture, area, mask);
  }
}

void ButtonPainter::DrawDisabledPicture(const Picture& picture, const Rect& area, OLE_COLOR mask) const {
  if (picture.bitmap() == nullptr) {
    effects_.PaintDisabledStdPic2(dc_, area.left, area.top, area.width, area.height, &picture);
    return;
  }
  // The system would draw all that is not white in one colour: a plain block, or without the mask colour a
  // silhouette, in which a globe is a disc. The dark pixels keep the lines inside a picture.
  const MemoryDC source(picture.bitmap());
  const Picture dark(DarkPixels(source.get(), {0, 0}, picture.size(), nullptr, TranslateColor(mask)));
  effects_.PaintDisabledStdPic2(dc_, area.left, area.top, area.width, area.height, &dark);
}

void ButtonPainter::DrawArrow(const Picture* arrow, const Rect& area) const {
  if (arrow == nullptr || arrow->bitmap() == nullptr) return;
  // Its shape in the captions' colour: black would not be seen on a dark face.
  const MemoryDC picture(arrow->bitmap());
  const UniqueBitmap shape = DarkPixels(picture.get(), {0, 0}, arrow->size(), nullptr, kArrowMask);
  const MemoryDC source(shape.get());
  const COLORREF color = TranslateColor(colors_.fore);
  const COLORREF mask = ~color & 0xFFFFFFU;
  const RGBQUAD colors[] = {QuadOf(color), QuadOf(mask)};
  SetDIBColorTable(source.get(), 0, 2, colors);
  effects_.PaintTransparentDC(dc_, area.left, area.top, area.width, area.height, source.get(), 0, 0, mask);
}

void ButtonPainter::DrawSeparator(const Rect& area) const {
  const int x = area.left + (area.width - 2) / 2;
  FillArea(dc_, {x, area.top, 1, area.height}, TranslateColor(colors_.shadow));
  FillArea(dc_, {x + 1, area.top, 1, area.height}, TranslateColor(colors_.highlight));
}

void ButtonPainter::DrawGrip(int bottom) const {
  constexpr int kTop = 2;
  constexpr int kBarWidth = 3;
  for (const int left : {3, 6}) DrawEdge({left, kTop, kBarWidth, bottom - kTop}, Raised());
}

void ButtonPainter::DrawBorder(const Rect& bar, int borderStyle) const {
  if (borderStyle != 0) DrawEdge(bar, Raised());
}

}  // namespace snip
