#pragma once

#include <windows.h>
#include <richedit.h>

#include "ui/commandbar/PropertyBag.h"

namespace snip {

// How the whole text of a rich-edit control looks, and what is typed into it.

/// The parts of a CHARFORMAT that a font gives.
constexpr DWORD kFontFormat =
    CFM_FACE | CFM_SIZE | CFM_CHARSET | CFM_BOLD | CFM_ITALIC | CFM_UNDERLINE | CFM_STRIKEOUT;

/// Sets those parts of font and colour that `mask` names (CFM_ bits).
void SetRichEditFormat(HWND control, const FontProperty& font, COLORREF color, DWORD mask);

/// Sets the font's size alone, of all or of what is selected (SCF_ALL or SCF_SELECTION).
void SetRichEditSize(HWND control, const FontProperty& font, int scope);

/// The colour of what is typed; what is shown keeps its own.
void SetRichEditDefaultColor(HWND control, COLORREF color);

/// Sets tab stops at every `distance` twips.
void SetRichEditTabs(HWND control, int distance);

/// Changes font and tab stops of a text whose colours, selection and first line stay.
void ChangeRichEditFont(HWND control, const FontProperty& font, int tabDistance);

}  // namespace snip
