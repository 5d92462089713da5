#pragma once

#include <windows.h>
#include <olectl.h>

namespace snip {

/// The reference to a system colour (COLOR_BTNFACE and so on): it follows the user's colours.
constexpr OLE_COLOR SystemColor(int index) {
  return 0x80000000U | static_cast<OLE_COLOR>(index);
}

/// The colour to draw with: a system colour's present value for a reference, any other colour unchanged. What
/// is no colour at all is taken by its red, green and blue parts.
COLORREF TranslateColor(OLE_COLOR color);

}  // namespace snip
