#include "ui/commandbar/ButtonPlaces.h"

#include <algorithm>

namespace snip {

ButtonPlaces PlacesOf(const BarButton& button, const ButtonLook& look, const ButtonMetrics& metrics) {
  const int shift = look.shifted ? 1 : 0;
  ButtonPlaces places;
  places.all = button.Area();
  places.pushPart = places.all;
  const auto& [left, top, width, height] = places.all;
  const int side = height;  // of the picture part

  if (button.Is(ButtonType::DropDown)) {
    places.pushPart.width = std::clamp(button.Right - 9 - left + 1, 0, width);
    places.arrowPart = {places.pushPart.right(), top, width - places.pushPart.width, height};
    places.arrow = {button.Right - 6, (metrics.scaleHeight - metrics.arrow.height) / 2, metrics.arrow.width,
                    metrics.arrow.height};
  }
  if (button.ShowsPicture()) {
    places.picture = {left + (side - button.PicWidth) / 2 + shift,
                      top + (side - button.PicHeight) / 2 + shift, button.PicWidth, button.PicHeight};
  }
  if (button.ShowsCaption()) {
    const int x = left + (button.ShowsPicture() ? side - 1 : 3) + shift;
    const int rightLine = places.pushPart.right() - 1;
    places.caption = {x, top + (height - metrics.lineHeight) / 2 + shift, std::max(rightLine - x, 0),
                      metrics.lineHeight};
  }
  return places;
}

}  // namespace snip
