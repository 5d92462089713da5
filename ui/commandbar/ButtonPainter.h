#pragma once

#include <windows.h>

#include <string>

#include "platform/Geometry.h"
#include "platform/OleColor.h"
#include "ui/commandbar/PaintEffects.h"

namespace snip {

/// What a bar and its buttons are drawn in. All may be references to system colours; those are looked up
/// whenever something is drawn.
struct ButtonColors {
  OLE_COLOR back = SystemColor(COLOR_BTNFACE);  ///< The bar's own.
  OLE_COLOR fore = SystemColor(COLOR_BTNTEXT);
  OLE_COLOR face = SystemColor(COLOR_BTNFACE);
  OLE_COLOR highlight = SystemColor(COLOR_BTNHIGHLIGHT);
  OLE_COLOR shadow = SystemColor(COLOR_BTNSHADOW);
};

/// Draws what command bars and their buttons are made of. Where each part goes, and which a button shows, is
/// the caller's to say: all places are pixels of the device context.
class ButtonPainter {
 public:
  /// The lines around a button or a part of one. The corners between the two belong to the second.
  struct Edge {
    OLE_COLOR leftAndTop = 0;
    OLE_COLOR rightAndBottom = 0;
  };

  ButtonPainter(HDC dc, const PaintEffects& effects, const ButtonColors& colors = {})
      : dc_(dc), effects_(effects), colors_(colors) {}

  Edge Raised() const { return {colors_.highlight, colors_.shadow}; }
  Edge Sunken() const { return {colors_.shadow, colors_.highlight}; }
  /// In the back colour: takes away an edge drawn earlier.
  Edge Flat() const { return {colors_.back, colors_.back}; }

  void Erase(const Rect& area) const;

  /// The ground of a toggle button that is on: the face, 20 % lighter. Goes under caption and picture.
  void FillChecked(const Rect& area) const;

  /// Lines of one pixel, just inside `area`.
  void DrawEdge(const Rect& area, const Edge& edge) const;

  /// A caption of one line from the left top of `area`; an ampersand underlines what follows it. Disabled, it
  /// is etched: its highlight takes one pixel more to the right and below.
  void DrawCaption(const std::string& caption, const Rect& area, HFONT font, bool enabled) const;

  /// A picture in `area`, which is the picture's own size. Pixels of the mask colour of a bitmap show the
  /// ground. A disabled one is drawn in the system's disabled style.
  void DrawPicture(const Picture* picture, const Rect& area, OLE_COLOR mask, bool enabled) const;

  /// The arrow of a drop-down button. Its mask colour is always light grey, whatever the bar's is.
  void DrawArrow(const Picture* arrow, const Rect& area) const;

  /// An etched vertical line down the middle of `area`.
  void DrawSeparator(const Rect& area) const;

  /// The two raised bars at the left of a dockable bar, down to `bottom`, which is the first row below them.
  void DrawGrip(int bottom) const;

  /// The lines around a whole bar: raised for every border style but 0, which is none.
  void DrawBorder(const Rect& bar, int borderStyle) const;

 private:
  void DrawDisabledPicture(const Picture& picture, const Rect& area, OLE_COLOR mask) const;

  HDC dc_;
  const PaintEffects& effects_;
  ButtonColors colors_;
};

}  // namespace snip
