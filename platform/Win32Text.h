#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace snip {

/// The whole text of a control in the ANSI code page; nothing when the control does not tell it, as one does
/// that is gone or out of memory.
std::optional<std::string> FieldText(HWND control);

/// The text of a window, to be shown or compared: empty as well when it cannot be told.
std::string WindowText(HWND window);

/// The text of an entry of a list box or a combo box, counted from 0; empty when there is no such entry.
std::string ListBoxText(HWND list, int entry);
std::string ComboBoxText(HWND combo, int entry);

std::u16string Utf16FromAnsi(std::string_view text);
/// What the code page lacks becomes "?" or its closest letter.
std::string AnsiFromUtf16(std::u16string_view text);

std::string Utf8FromAnsi(const std::string& text);
std::string AnsiFromUtf8(const std::string& text);

/// Equality without regard to letter case in the system's ANSI code page, upper half included.
bool SameTextIgnoringCase(const std::string& a, const std::string& b);

/// The number that a whole text is, as the user's locale writes it, in single precision; nothing when it is
/// none.
std::optional<float> SingleFromText(const std::string& text);

/// Full path of the running executable.
std::string ProgramPath();

/// The same with every character, of whatever code page.
std::wstring WideProgramPath();

/// Directory of the running executable, without a "\" at its end unless it is a drive's root.
std::string ProgramDirectory();

/// The words of the process's command line, the program's own name left out.
std::vector<std::string> CommandLineArguments();

}  // namespace snip
