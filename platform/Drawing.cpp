#include "platform/Drawing.h"

#include "platform/Rects.h"

namespace snip {

void FillArea(HDC dc, const Rect& area, COLORREF color) {
  const RECT bounds = ToRECT(area);
  const UniqueBrush brush(CreateSolidBrush(color));
  FillRect(dc, &bounds, brush.get());
}

UniqueBitmap ScreenBitmap(Size size) {
  return UniqueBitmap(CreateCompatibleBitmap(WindowDC(nullptr).get(), size.width, size.height));
}

}  // namespace snip
