#pragma once

#include <windows.h>

#include "platform/Handle.h"
#include "platform/Twips.h"
#include "ui/commandbar/PropertyBag.h"

namespace snip {

/// The platform's font for a font property, in the resolution of the screen.
UniqueFont MakeFont(const FontProperty& font, const TwipsPerPixel& twips);

/// The other way round, for a font that the system names.
FontProperty FontPropertyOf(const LOGFONTA& font, const TwipsPerPixel& twips);

}  // namespace snip
