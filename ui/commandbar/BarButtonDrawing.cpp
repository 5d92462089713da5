#include "ui/commandbar/BarButtonDrawing.h"

#include "ui/commandbar/ButtonPainter.h"
#include "ui/commandbar/ButtonPlaces.h"

namespace snip {
namespace {

ButtonPainter::Edge EdgeLines(const ButtonPainter& painter, Edge edge) {
  switch (edge) {
    case Edge::Raised:
      return painter.Raised();
    case Edge::Sunken:
      return painter.Sunken();
    case Edge::Flat:
      break;
  }
  return painter.Flat();
}

}  // namespace

void DrawBarButton(HDC dc, const PaintEffects& effects, const BarButton& button, const ButtonLook& look,
                   const BarStyle& style) {
  const ButtonPlaces places = PlacesOf(button, look,
                                       {.lineHeight = style.lineHeight,
                                        .arrow = style.drop != nullptr ? style.drop->size() : Size{},
                                        .scaleHeight = style.scaleHeight});
  const ButtonPainter painter(dc, effects);
  painter.Erase(places.all);
  if (button.Is(ButtonType::Separator)) {
    painter.DrawSeparator(places.all);
    return;
  }
  if (look.lightened) painter.FillChecked(places.all);
  if (button.ShowsPicture()) {
    painter.DrawPicture(button.Picture.get(), places.picture, style.maskColor, button.Enabled);
  }
  if (button.ShowsCaption()) painter.DrawCaption(button.Caption, places.caption, style.font, button.Enabled);
  if (button.Is(ButtonType::DropDown)) {
    painter.DrawArrow(style.drop, places.arrow);
    painter.DrawEdge(places.arrowPart, EdgeLines(painter, look.arrow));
  }
  painter.DrawEdge(places.pushPart, EdgeLines(painter, look.push));
}

}  // namespace snip
