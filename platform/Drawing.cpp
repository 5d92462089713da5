#include "platform/Drawing.h"

namespace snip {

void FillArea(HDC dc, const Rect& area, COLORREF color) {
  const RECT bounds{area.left, area.top, area.right(), area.bottom()};
  const UniqueBrush brush(CreateSolidBrush(color));
  FillRect(dc, &bounds, brush.get());
}

UniqueBitmap ScreenBitmap(Size size) {
  return UniqueBitmap(CreateCompatibleBitmap(WindowDC(nullptr).get(), size.width, size.height));
}

}  // namespace snip
