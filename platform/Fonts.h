#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "platform/Geometry.h"
#include "platform/Handle.h"

namespace snip {

/// The font that the user's system shows messages and dialogs in.
UniqueFont MessageFont();

/// The same in another face; in its own when that face is not installed.
UniqueFont MessageFontInFace(const std::string& face);

/// A font by face and size in points, in the screen's resolution.
UniqueFont FontOfSize(const std::string& face, double points);

/// Average width and height in pixels of a character, the base of the platform's dialog units.
Size CharacterSize(HFONT font);

/// Size in pixels of a text on one line; every "&" in it counts.
Size TextSize(HFONT font, std::string_view text);

/// The font that a control has been given; null for the system's own.
HFONT FontOf(HWND control);

/// Size in pixels of a text of several lines, wrapped at `width`. A word too long for a line is broken.
Size WrappedTextSize(HFONT font, const std::string& text, int width);

}  // namespace snip
