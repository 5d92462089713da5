#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace snip {

/// The whole text of a window or control.
std::string WindowText(HWND window);

/// Equality without regard to letter case in the system's ANSI code page, upper half included.
bool SameTextIgnoringCase(const std::string& a, const std::string& b);

/// The number that a whole text is, as the user's locale writes it, in single precision; nothing when it is
/// none.
std::optional<float> SingleFromText(const std::string& text);

/// Full path of the running executable.
std::string ProgramPath();

/// Directory of the running executable, without a "\" at its end unless it is a drive's root.
std::string ProgramDirectory();

/// The words of the process's command line, the program's own name left out.
std::vector<std::string> CommandLineArguments();

}  // namespace snip
