#pragma once

#include <windows.h>

#include <string>

#include "platform/Geometry.h"
#include "platform/Handle.h"

namespace snip {

/// Fills an area, in the device context's own units, with one colour.
void FillArea(HDC dc, const Rect& area, COLORREF color);

/// Draws lines of one pixel, just inside `area`. The corners between the two belong to the second colour.
void DrawEdgeLines(HDC dc, const Rect& area, COLORREF leftAndTop, COLORREF rightAndBottom);

/// Draws a text of one line; an ampersand underlines what follows it. `format` is of DrawText.
void DrawLabel(HDC dc, const std::string& text, const Rect& area, HFONT font, COLORREF color,
               UINT format = 0);
/// The same as the system etches disabled texts: the highlight takes one pixel more to the right and below.
void DrawEtchedLabel(HDC dc, const std::string& text, const Rect& area, HFONT font, COLORREF highlight,
                     COLORREF shadow, UINT format = 0);

/// A bitmap for what the screen shows, null for a size of nothing. It has 32 bits a pixel and belongs to no
/// device: one in the screen's format takes seven requests to Wine's server to make and select, and the
/// program makes fifty when it starts. Only a screen of fewer colours gets one in its format, since colours
/// that it lacks are mixed there, and would turn into their nearest when they are copied.
UniqueBitmap ColorBitmap(Size size);

/// Such a bitmap with the device context to draw on it, and perhaps a palette.
class Canvas {
 public:
  explicit Canvas(Size size, HPALETTE palette = nullptr)
      : bitmap_(ColorBitmap(size)), dc_(bitmap_.get(), palette) {}
  HDC dc() const { return dc_.get(); }

 private:
  UniqueBitmap bitmap_;
  MemoryDC dc_;
};

}  // namespace snip
