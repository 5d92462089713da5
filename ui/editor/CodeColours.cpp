#include "ui/editor/CodeColours.h"

#include <algorithm>
#include <cmath>

namespace snip {
namespace {

constexpr Rgb Pack(Rgb red, Rgb green, Rgb blue) {
  return red | green << 8 | blue << 16;
}

/// From 0, black, to 1, white, as the eye weighs the parts of light.
double Luminance(Rgb color) {
  const auto light = [color](unsigned shift) {
    const double part = static_cast<double>(color >> shift & 0xFF) / 255.0;
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * light(0) + 0.7152 * light(8) + 0.0722 * light(16);
}

}  // namespace

double Contrast(Rgb a, Rgb b) {
  const auto [darker, lighter] = std::minmax({Luminance(a), Luminance(b)});
  return (lighter + 0.05) / (darker + 0.05);
}

CodeColours CodeColoursOn(Rgb background, Rgb fore) {
  constexpr double readable = 4.5;
  const bool light = Contrast(background, Pack(0, 0, 0)) > Contrast(background, Pack(255, 255, 255));
  const auto orFore = [&](Rgb color) { return Contrast(color, background) >= readable ? color : fore; };
  return {.fore = fore,
          .keyword = orFore(light ? Pack(0, 0, 128) : Pack(128, 176, 255)),
          .comment = orFore(light ? Pack(0, 112, 0) : Pack(128, 224, 128)),
          .string = orFore(light ? Pack(144, 16, 16) : Pack(255, 168, 144))};
}

}  // namespace snip
