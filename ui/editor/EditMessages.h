#pragma once

#include <windows.h>

namespace snip {

// What messages do with the text of an edit or rich-edit control.

/// Messages by which others than the program change the text; a locked control's own refusal does not cover
/// all.
bool ChangesText(UINT message);
/// Messages that tell, change or scroll the text, or may.
bool ConcernsWholeText(UINT message);
/// Messages that change the text at the caret, if at all.
bool EditsAtCaret(UINT message, WPARAM wParam);

}  // namespace snip
