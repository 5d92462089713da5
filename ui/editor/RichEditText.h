#pragma once

#include <windows.h>
#include <richedit.h>

#include <string>

namespace snip {

/// A text in the ANSI code page as a rich-edit control counts it: UTF-16 with one CR for each CR LF.
std::u16string RichEditCharacters(const std::string& text);

/// The same, every character from 0x80 on being some one char from there.
std::string RichEditColumns(std::u16string_view characters);

/// The characters [begin, end) of a rich-edit control, lines ending in CR, in the ANSI code page.
std::string RichEditRange(HWND control, LONG begin, LONG end);

/// Fills a rich-edit control. `format` is SF_TEXT or SF_RTF.
void StreamIn(HWND control, const std::string& bytes, WPARAM format);

}  // namespace snip
