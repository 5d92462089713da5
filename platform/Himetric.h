#pragma once

#include <cstdint>

namespace snip {

/// Picture objects tell their size in HIMETRIC, hundredths of a millimetre: 2540 to the inch.
constexpr int kHimetricPerInch = 2540;

/// To the nearest pixel, so that a picture of n pixels, whose HIMETRIC size was rounded, is n pixels again.
constexpr int HimetricToPixels(int himetric, int dpi) {
  const std::int64_t scaled = std::int64_t{himetric} * dpi;
  const std::int64_t half = scaled < 0 ? -kHimetricPerInch / 2 : kHimetricPerInch / 2;
  return static_cast<int>((scaled + half) / kHimetricPerInch);
}

}  // namespace snip
