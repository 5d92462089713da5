#pragma once

#include <windows.h>

#include "platform/Geometry.h"
#include "settings/SettingsStore.h"

namespace snip {

/// Where the palette was last, in pixels, moved and shrunk to fit on a screen. If nothing is stored, in front
/// of the upper half of `owner`.
Rect StoredPalettePlace(const SettingsStore& settings, HWND owner);
void StorePalettePlace(const SettingsStore& settings, const Rect& place);  ///< In pixels; stored in twips.

Size LeastPaletteSize();  ///< Pixels.

}  // namespace snip
