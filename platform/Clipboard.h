#pragma once

#include <windows.h>

#include <string>

namespace snip {

/// Puts a text in the ANSI code page on the clipboard in place of what is there; false when another program
/// keeps the clipboard open. `owner` is the window on whose behalf this happens.
bool CopyToClipboard(HWND owner, const std::string& text);

bool ClipboardHasText();
/// The clipboard's text in the ANSI code page; empty when there is none, or another program keeps it open.
std::string ClipboardText(HWND owner);

}  // namespace snip
