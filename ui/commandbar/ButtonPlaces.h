#pragma once

#include "platform/Geometry.h"
#include "ui/commandbar/ButtonLook.h"
#include "ui/commandbar/CommandBarButtons.h"

namespace snip {

/// Where everything of one button is drawn, in client pixels of the bar. Areas that a button does not have
/// are empty. `picture` has the size of the button's picture, `arrow` that of the `drop` picture.
struct ButtonPlaces {
  Rect all;        ///< What is erased, and a separator's line centred in.
  Rect pushPart;   ///< What takes the edge `ButtonLook::push`: the whole button when it has no arrow part.
  Rect arrowPart;  ///< What takes the edge `ButtonLook::arrow`.
  Rect picture;
  Rect caption;  ///< The caption starts in its left top corner.
  Rect arrow;
};

/// The sizes of what is drawn besides the button's own picture, and of the bar.
struct ButtonMetrics {
  int lineHeight = 0;  ///< Of a line in the bar's font.
  Size arrow;          ///< Of the `drop` picture.
  int scaleHeight = 0;
};

/// A drop-down button is divided behind the column Right - 9, which is the last of the push part; its arrow
/// starts in the column Right - 6 and never moves.
///
/// The picture part is the square that a picture-only button is. A picture is centred in it, an odd pixel
/// below and to the right: one of 16 by 16 on a bar 26 high has 3 pixels all round. (So it is also beside a
/// caption and on a drop-down button, for pictures to be at the same distance from the left edge everywhere.)
///
/// A caption alone has 3 pixels to its left. A caption beside a picture starts in the last column of the
/// picture part, which leaves 3 pixels behind it. It may reach up to the line of the right edge: what is
/// drawn can be wider than what was measured, which lacks the first "&" alone. Captions are centred from top
/// to bottom.
ButtonPlaces PlacesOf(const BarButton& button, const ButtonLook& look, const ButtonMetrics& metrics);

}  // namespace snip
