#include "platform/Drawing.h"

#include "platform/Rects.h"

namespace snip {

void FillArea(HDC dc, const Rect& area, COLORREF color) {
  const RECT bounds = ToRECT(area);
  const UniqueBrush brush(CreateSolidBrush(color));
  FillRect(dc, &bounds, brush.get());
}

void DrawEdgeLines(HDC dc, const Rect& area, COLORREF leftAndTop, COLORREF rightAndBottom) {
  if (area.width <= 0 || area.height <= 0) return;  // a bar too low for its buttons
  FillArea(dc, {area.left, area.top, 1, area.height}, leftAndTop);
  FillArea(dc, {area.left, area.top, area.width, 1}, leftAndTop);
  FillArea(dc, {area.right() - 1, area.top, 1, area.height}, rightAndBottom);
  FillArea(dc, {area.left, area.bottom() - 1, area.width, 1}, rightAndBottom);
}

void DrawLabel(HDC dc, const std::string& text, const Rect& area, HFONT font, COLORREF color, UINT format) {
  const SelectedObject selectedFont(dc, font);
  const int previousMode = SetBkMode(dc, TRANSPARENT);
  const COLORREF previousColor = SetTextColor(dc, color);
  RECT bounds = ToRECT(area);
  DrawTextA(dc, text.data(), static_cast<int>(text.size()), &bounds, DT_SINGLELINE | format);
  SetTextColor(dc, previousColor);
  SetBkMode(dc, previousMode);
}

void DrawEtchedLabel(HDC dc, const std::string& text, const Rect& area, HFONT font, COLORREF highlight,
                     COLORREF shadow, UINT format) {
  const Rect shifted{area.left + 1, area.top + 1, area.width, area.height};
  DrawLabel(dc, text, shifted, font, highlight, format);
  DrawLabel(dc, text, area, font, shadow, format);
}

UniqueBitmap ColorBitmap(Size size) {
  static const bool exact = GetDeviceCaps(WindowDC(nullptr).get(), BITSPIXEL) >= 24;
  if (!exact) return UniqueBitmap(CreateCompatibleBitmap(WindowDC(nullptr).get(), size.width, size.height));
  BITMAPINFO description{};
  description.bmiHeader.biSize = sizeof description.bmiHeader;
  description.bmiHeader.biWidth = size.width;
  description.bmiHeader.biHeight = size.height;
  description.bmiHeader.biPlanes = 1;
  description.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  return UniqueBitmap(CreateDIBSection(nullptr, &description, DIB_RGB_COLORS, &bits, nullptr, 0));
}

}  // namespace snip
