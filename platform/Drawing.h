#pragma once

#include <windows.h>

#include "platform/Geometry.h"
#include "platform/Handle.h"

namespace snip {

/// Fills an area, in the device context's own units, with one colour.
void FillArea(HDC dc, const Rect& area, COLORREF color);

/// A bitmap in the screen's format.
UniqueBitmap ScreenBitmap(Size size);

/// A bitmap in the screen's format with the device context to draw on it, and perhaps a palette.
class Canvas {
 public:
  explicit Canvas(Size size, HPALETTE palette = nullptr)
      : bitmap_(ScreenBitmap(size)), dc_(bitmap_.get(), palette) {}
  HDC dc() const { return dc_.get(); }

 private:
  UniqueBitmap bitmap_;
  MemoryDC dc_;
};

}  // namespace snip
