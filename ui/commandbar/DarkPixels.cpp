#include "ui/commandbar/DarkPixels.h"

#include "platform/Drawing.h"

namespace snip {
namespace {

/// Black and white in a DIB section: copied into it, a colour becomes the nearer of the two. (A monochrome
/// bitmap without a colour table would compare with the background colour instead.)
UniqueBitmap BlackAndWhiteBitmap(Size size) {
  struct {
    BITMAPINFOHEADER header;
    RGBQUAD colors[2];
  } description{};
  description.header.biSize = sizeof description.header;
  description.header.biWidth = size.width;
  description.header.biHeight = -size.height;  // from the top down
  description.header.biPlanes = 1;
  description.header.biBitCount = 1;
  description.header.biCompression = BI_RGB;
  description.colors[1] = {0xFF, 0xFF, 0xFF, 0};
  void* bits = nullptr;
  return UniqueBitmap(CreateDIBSection(nullptr, reinterpret_cast<const BITMAPINFO*>(&description),
                                       DIB_RGB_COLORS, &bits, nullptr, 0));
}

}  // namespace

UniqueBitmap DarkPixels(HDC source, Point origin, Size size, HPALETTE palette, std::optional<COLORREF> mask) {
  // A copy, so that the source's own colours stay as they are; a monochrome source is drawn in them.
  const Canvas image(size, palette);
  SetTextColor(image.dc(), GetTextColor(source));
  SetBkColor(image.dc(), GetBkColor(source));
  BitBlt(image.dc(), 0, 0, size.width, size.height, source, origin.x, origin.y, SRCCOPY);

  UniqueBitmap result = BlackAndWhiteBitmap(size);
  const MemoryDC dark(result.get(), palette);
  GdiFlush();
  BitBlt(dark.get(), 0, 0, size.width, size.height, image.dc(), 0, 0, SRCCOPY);

  if (mask) {
    const UniqueBitmap groundBitmap(CreateBitmap(size.width, size.height, 1, 1, nullptr));
    const MemoryDC ground(groundBitmap.get(), palette);
    SetBkColor(image.dc(), *mask);
    BitBlt(ground.get(), 0, 0, size.width, size.height, image.dc(), 0, 0, SRCCOPY);
    BitBlt(dark.get(), 0, 0, size.width, size.height, ground.get(), 0, 0, SRCPAINT);
  }
  return result;
}

}  // namespace snip
