#pragma once

#include <cstdint>

namespace snip {

/// A colour's parts as the platform packs them: red in the lowest byte, then green and blue.
using Rgb = std::uint32_t;

/// The colours of a code field.
struct CodeColours {
  Rgb fore = 0;
  Rgb keyword = 0;
  Rgb comment = 0;
  Rgb string = 0;
  friend bool operator==(const CodeColours&, const CodeColours&) = default;
};

/// How far apart two colours are to the eye: from 1 for equal ones to 21 for black on white.
double Contrast(Rgb a, Rgb b);

/// The classic colours of Visual Basic code on a light background and lightened ones on a dark one. A colour
/// that would be hard to read there gives way to the fore colour.
CodeColours CodeColoursOn(Rgb background, Rgb fore);

}  // namespace snip
