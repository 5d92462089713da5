#include "ui/commandbar/ButtonLook.h"

#include <algorithm>

namespace snip {
namespace {

ButtonLook DownLook(const BarButton& button) {
  return {.shifted = true, .push = Edge::Sunken, .arrow = Edge::Sunken, .lightened = button.IsToggledOn()};
}

}  // namespace

ButtonLook RedrawLook(const BarButton& button) {
  return button.IsToggledOn() ? DownLook(button) : ButtonLook{};
}

ButtonLook PaintLook(const BarButton& button) {
  return button.State == 1 ? DownLook(button) : ButtonLook{};
}

std::vector<ButtonLook> PaintLooks(std::span<const BarButton> buttons, bool runMode) {
  std::vector<ButtonLook> looks;
  if (!runMode) return looks;
  looks.reserve(buttons.size());
  for (const BarButton& button : buttons) looks.push_back(PaintLook(button));
  return looks;
}

ButtonLook RaisedLook() {
  return {.shifted = false, .push = Edge::Raised, .arrow = Edge::Raised, .lightened = false};
}

ButtonLook PressedLook(const BarButton& button, ButtonPart part, bool hot) {
  ButtonLook look = hot ? RaisedLook() : ButtonLook{};
  if (part == ButtonPart::Arrow) {
    look.arrow = Edge::Sunken;
    return look;
  }
  look.shifted = true;
  look.push = Edge::Sunken;
  look.lightened = button.IsToggledOn();
  return look;
}

std::uint32_t Lightened(std::uint32_t color) {
  std::uint32_t lightened = 0;
  for (const unsigned shift : {0U, 8U, 16U}) {
    const std::uint32_t channel = color >> shift & 0xFFU;
    lightened |= std::min((channel * 12 + 5) / 10, std::uint32_t{0xFF}) << shift;
  }
  return lightened;
}

}  // namespace snip
