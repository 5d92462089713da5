#pragma once

#include <windows.h>

#include <optional>

#include "platform/Geometry.h"
#include "platform/Handle.h"

namespace snip {

/// The shape that replaces a picture which is shown disabled: its dark pixels in black, all others in
/// white, in a bitmap of one bit per pixel. Pixels of the mask colour, if there is one, belong to the ground
/// and are white however dark they are. `palette` is what the colours are seen through.
UniqueBitmap DarkPixels(HDC source, Point origin, Size size, HPALETTE palette,
                        std::optional<COLORREF> mask = std::nullopt);

}  // namespace snip
