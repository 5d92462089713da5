#pragma once

#include <windows.h>

#include <exception>

#include "platform/Handle.h"
#include "platform/OleColor.h"
#include "ui/commandbar/Picture.h"

namespace snip {

/// A picture that is neither bitmap nor icon was to be painted.
class InvalidPicture : public std::exception {
 public:
  static constexpr int kNumber = 481;

  const char* what() const noexcept override { return "Invalid picture"; }
  int Number() const { return kNumber; }
};

/// Paints pictures onto any device context: as they are, with one colour transparent, or disabled.
///
/// Coordinates are pixels, colours may be references to system colours. A null or empty picture draws
/// nothing; `hPal` is the palette that the images are seen through, null for the halftone palette that every
/// painter owns. Whatever an operation creates is released when it returns, and no device context given to it
/// is left changed but for the pixels painted.
class PaintEffects {
 public:
  PaintEffects();

  /// The picture without effects. An icon is drawn in its natural size.
  void PaintNormalStdPic(HDC hdcDest, int xDest, int yDest, int width, int height, const Picture* picSource,
                         int xSrc, int ySrc, HPALETTE hPal = nullptr) const;

  /// The image without its pixels of the mask colour. The destination changes once, so that it may be the
  /// screen.
  void PaintTransparentDC(HDC hdcDest, int xDest, int yDest, int width, int height, HDC hdcSrc, int xSrc,
                          int ySrc, OLE_COLOR clrMask, HPALETTE hPal = nullptr) const;
  void PaintTransparentStdPic(HDC hdcDest, int xDest, int yDest, int width, int height,
                              const Picture* picSource, int xSrc, int ySrc, OLE_COLOR clrMask,
                              HPALETTE hPal = nullptr) const;

  /// The image embossed: its dark pixels in the shadow colour, over the same shape in the highlight colour
  /// one pixel right and down. Light pixels and those of the mask colour show the ground.
  void PaintDisabledDC(HDC hdcDest, int xDest, int yDest, int width, int height, HDC hdcSrc, int xSrc,
                       int ySrc, OLE_COLOR clrMask, OLE_COLOR clrHighlight, OLE_COLOR clrShadow,
                       HPALETTE hPal = nullptr) const;
  void PaintDisabledStdPic(HDC hdcDest, int xDest, int yDest, int width, int height, const Picture* picSource,
                           int xSrc, int ySrc, OLE_COLOR clrMask, OLE_COLOR clrHighlight, OLE_COLOR clrShadow,
                           HPALETTE hPal = nullptr) const;

  /// The picture as the system draws a disabled one. The system knows no mask colour: every pixel of a bitmap
  /// that is not white counts as part of its shape.
  void PaintDisabledStdPic2(HDC hdcDest, int xDest, int yDest, int width, int height,
                            const Picture* picSource) const;

  /// The picture embossed in the system's button colours, on a ground in the colour of a button's face.
  void PaintDisabledStdPic3(HDC hdcDest, int xDest, int yDest, int width, int height,
                            const Picture* picSource, int xSrc, int ySrc) const;

  /// Tiles a bitmap. `beginX` and `beginY` count tiles of `width2` x `height2` pixels, where the first is
  /// put; the last tiles are those that begin at or before `width` and `height`. They are not cut off there.
  void BoxStdPic(HDC hdcDest, int beginX, int beginY, int width, int height, const Picture* picSource,
                 int width2, int height2) const;

 private:
  HPALETTE PaletteFor(HPALETTE hPal) const { return hPal != nullptr ? hPal : halftone_.get(); }

  UniquePalette halftone_;
};

}  // namespace snip
