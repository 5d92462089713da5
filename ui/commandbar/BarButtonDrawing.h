#pragma once

#include <windows.h>

#include "platform/OleColor.h"
#include "ui/commandbar/CommandBarButtons.h"
#include "ui/commandbar/ButtonLook.h"
#include "ui/commandbar/PaintEffects.h"
#include "ui/commandbar/Picture.h"

namespace snip {

/// What all buttons of a bar are drawn with.
struct BarStyle {
  HFONT font = nullptr;
  int lineHeight = 0;             ///< Of the font, in pixels.
  OLE_COLOR maskColor = 0;        ///< The transparent colour of the buttons' pictures.
  const Picture* drop = nullptr;  ///< The arrow of drop-down buttons.
  int scaleHeight = 0;            ///< Inner height of the bar in pixels.
};

/// Draws one button whole: ground, face and edges. Coordinates are client pixels of the bar.
void DrawBarButton(HDC dc, const PaintEffects& effects, const BarButton& button, const ButtonLook& look,
                   const BarStyle& style);

}  // namespace snip
