#include "ui/commandbar/PaintEffects.h"

#include "platform/Drawing.h"
#include "ui/commandbar/DarkPixels.h"

namespace snip {
namespace {

constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);

// Raster operations that the platform has no names for.
constexpr DWORD kDestinationAndNotSource = 0x220326;
constexpr DWORD kBrushWhereSourceIsBlack = 0xB8074A;

/// Whether there is an image to paint; throws for a picture of a type that cannot be painted.
bool HasImage(const Picture* picture) {
  if (picture == nullptr || picture->empty()) return false;
  if (picture->bitmap() == nullptr && picture->icon() == nullptr) throw InvalidPicture();
  return true;
}

/// Draws in one colour where the shape is black.
void FillShape(HDC dc, int x, int y, Size size, HDC shape, COLORREF color) {
  const UniqueBrush brush(CreateSolidBrush(color));
  const SelectedObject selected(dc, brush.get());
  BitBlt(dc, x, y, size.width, size.height, shape, 0, 0, kBrushWhereSourceIsBlack);
}

void Emboss(HDC dc, int x, int y, Size size, HBITMAP shape, COLORREF highlight, COLORREF shadow,
            HPALETTE palette) {
  const MemoryDC source(shape, palette);
  FillShape(dc, x + 1, y + 1, size, source.get(), highlight);
  FillShape(dc, x, y, size, source.get(), shadow);
}

}  // namespace

PaintEffects::PaintEffects() : halftone_(CreateHalftonePalette(WindowDC(nullptr).get())) {}

void PaintEffects::PaintNormalStdPic(HDC hdcDest, int xDest, int yDest, int width, int height,
                                     const Picture* picSource, int xSrc, int ySrc, HPALETTE hPal) const {
  if (!HasImage(picSource)) return;
  if (picSource->icon() != nullptr) {
    DrawIconEx(hdcDest, xDest, yDest, picSource->icon(), 0, 0, 0, nullptr, DI_NORMAL);
    return;
  }
  const MemoryDC source(picSource->bitmap(), PaletteFor(hPal));
  BitBlt(hdcDest, xDest, yDest, width, height, source.get(), xSrc, ySrc, SRCCOPY);
}

void PaintEffects::PaintTransparentDC(HDC hdcDest, int xDest, int yDest, int width, int height, HDC hdcSrc,
                                      int xSrc, int ySrc, OLE_COLOR clrMask, HPALETTE hPal) const {
  if (width <= 0 || height <= 0) return;
  const HPALETTE palette = PaletteFor(hPal);

  const Canvas background({width, height}, palette);
  BitBlt(background.dc(), 0, 0, width, height, hdcDest, xDest, yDest, SRCCOPY);

  const Canvas image({width, height}, palette);
  SetBkColor(image.dc(), GetBkColor(hdcSrc));
  SetTextColor(image.dc(), GetTextColor(hdcSrc));
  BitBlt(image.dc(), 0, 0, width, height, hdcSrc, xSrc, ySrc, SRCCOPY);

  // Copied into a monochrome bitmap, a pixel of the background colour becomes white and any other black.
  const UniqueBitmap maskBitmap(CreateBitmap(width, height, 1, 1, nullptr));
  const MemoryDC mask(maskBitmap.get(), palette);
  SetBkColor(image.dc(), TranslateColor(clrMask));
  SetTextColor(image.dc(), kWhite);
  BitBlt(mask.get(), 0, 0, width, height, image.dc(), 0, 0, SRCCOPY);

  // And back: white takes the background colour, black the text colour.
  SetTextColor(image.dc(), kBlack);
  SetBkColor(image.dc(), kWhite);
  BitBlt(image.dc(), 0, 0, width, height, mask.get(), 0, 0, kDestinationAndNotSource);

  // The background's colours are black and white already, as those of every new device context.
  BitBlt(background.dc(), 0, 0, width, height, mask.get(), 0, 0, SRCAND);
  BitBlt(background.dc(), 0, 0, width, height, image.dc(), 0, 0, SRCPAINT);
  BitBlt(hdcDest, xDest, yDest, width, height, background.dc(), 0, 0, SRCCOPY);
}

void PaintEffects::PaintTransparentStdPic(HDC hdcDest, int xDest, int yDest, int width, int height,
                                          const Picture* picSource, int xSrc, int ySrc, OLE_COLOR clrMask,
                                          HPALETTE hPal) const {
  if (!HasImage(picSource)) return;
  const HPALETTE palette = PaletteFor(hPal);
  if (picSource->icon() != nullptr) {
    const Canvas source({width, height}, palette);
    FillArea(source.dc(), {0, 0, width, height}, TranslateColor(clrMask));
    DrawIconEx(source.dc(), -xSrc, -ySrc, picSource->icon(), 0, 0, 0, nullptr, DI_NORMAL);
    PaintTransparentDC(hdcDest, xDest, yDest, width, height, source.dc(), 0, 0, clrMask, palette);
    return;
  }
  const MemoryDC source(picSource->bitmap(), palette);
  PaintTransparentDC(hdcDest, xDest, yDest, width, height, source.get(), xSrc, ySrc, clrMask, palette);
}

void PaintEffects::PaintDisabledDC(HDC hdcDest, int xDest, int yDest, int width, int height, HDC hdcSrc,
                                   int xSrc, int ySrc, OLE_COLOR clrMask, OLE_COLOR clrHighlight,
                                   OLE_COLOR clrShadow, HPALETTE hPal) const {
  if (width <= 0 || height <= 0) return;
  const HPALETTE palette = PaletteFor(hPal);
  const Size size{width, height};
  const UniqueBitmap shape = DarkPixels(hdcSrc, {xSrc, ySrc}, size, palette, TranslateColor(clrMask));
  Emboss(hdcDest, xDest, yDest, size, shape.get(), TranslateColor(clrHighlight), TranslateColor(clrShadow),
         palette);
}

void PaintEffects::PaintDisabledStdPic(HDC hdcDest, int xDest, int yDest, int width, int height,
                                       const Picture* picSource, int xSrc, int ySrc, OLE_COLOR clrMask,
                                       OLE_COLOR clrHighlight, OLE_COLOR clrShadow, HPALETTE hPal) const {
  if (!HasImage(picSource)) return;
  const HPALETTE palette = PaletteFor(hPal);
  if (picSource->icon() != nullptr) {
    const COLORREF mask = TranslateColor(clrMask);
    const Canvas source({width, height}, palette);
    SetBkColor(source.dc(), mask);
    FillArea(source.dc(), {0, 0, width, height}, mask);
    DrawIcon(source.dc(), -xSrc, -ySrc, picSource->icon());
    PaintDisabledDC(hdcDest, xDest, yDest, width, height, source.dc(), 0, 0, clrMask, clrHighlight, clrShadow,
                    palette);
    return;
  }
  const MemoryDC source(picSource->bitmap(), palette);
  PaintDisabledDC(hdcDest, xDest, yDest, width, height, source.get(), xSrc, ySrc, clrMask, clrHighlight,
                  clrShadow, palette);
}

void PaintEffects::PaintDisabledStdPic2(HDC hdcDest, int xDest, int yDest, int width, int height,
                                        const Picture* picSource) const {
  if (!HasImage(picSource)) return;
  const bool isIcon = picSource->icon() != nullptr;
  const auto image =
      isIcon ? reinterpret_cast<LPARAM>(picSource->icon()) : reinterpret_cast<LPARAM>(picSource->bitmap());
  DrawStateA(hdcDest, nullptr, nullptr, image, 0, xDest, yDest, width, height,
             (isIcon ? DST_ICON : DST_BITMAP) | DSS_DISABLED);
}

void PaintEffects::PaintDisabledStdPic3(HDC hdcDest, int xDest, int yDest, int width, int height,
                                        const Picture* picSource, int xSrc, int ySrc) const {
  if (picSource == nullptr || width <= 0 || height <= 0) return;
  const HPALETTE palette = halftone_.get();
  const Size size{width, height};
  UniqueBitmap shape;
  if (picSource->bitmap() != nullptr) {
    const MemoryDC source(picSource->bitmap(), palette);
    shape = DarkPixels(source.get(), {xSrc, ySrc}, size, palette);
  } else if (picSource->icon() != nullptr) {
    // On white, so that what is transparent counts as light.
    const Canvas source(size, palette);
    FillArea(source.dc(), {0, 0, width, height}, kWhite);
    DrawIconEx(source.dc(), -xSrc, -ySrc, picSource->icon(), 0, 0, 0, nullptr, DI_NORMAL);
    shape = DarkPixels(source.dc(), {0, 0}, size, palette);
  } else {
    return;
  }
  FillArea(hdcDest, {xDest, yDest, width, height}, GetSysColor(COLOR_BTNFACE));
  Emboss(hdcDest, xDest, yDest, size, shape.get(), GetSysColor(COLOR_BTNHIGHLIGHT),
         GetSysColor(COLOR_BTNSHADOW), palette);
}

void PaintEffects::BoxStdPic(HDC hdcDest, int beginX, int beginY, int width, int height,
                             const Picture* picSource, int width2, int height2) const {
  if (picSource == nullptr || picSource->bitmap() == nullptr || width2 <= 0 || height2 <= 0) return;
  const MemoryDC tile(picSource->bitmap(), halftone_.get());
  for (int x = beginX * width2; x <= width; x += width2) {
    for (int y = beginY * height2; y <= height; y += height2) {
      BitBlt(hdcDest, x, y, width2, height2, tile.get(), 0, 0, SRCCOPY);
    }
  }
}

}  // namespace snip
