#pragma once

#include <windows.h>
#include <richedit.h>

#include <optional>
#include <string>
#include <string_view>

namespace snip {

/// A text in the ANSI code page as a rich-edit control counts it: UTF-16 with one CR for each CR LF.
std::u16string RichEditCharacters(const std::string& text);

/// The same, every character from 0x80 on being some one char from there.
std::string RichEditColumns(std::u16string_view characters);

/// The characters of a rich-edit control, lines ending in CR; nothing when it does not tell them.
std::optional<std::u16string> RichEditText(HWND control);
/// Those that are selected.
std::optional<std::u16string> SelectedRichEditText(HWND control);

/// What such characters are in the ANSI code page, with CR LF at line ends.
std::string AnsiFromRichEdit(std::u16string_view characters);

/// Fills a rich-edit control. `format` is SF_TEXT or SF_RTF.
void StreamIn(HWND control, const std::string& bytes, WPARAM format);

}  // namespace snip
