#pragma once

#include <windows.h>

#include <string>

namespace snip::test {

/// What the client program printed, and how it ended.
struct ProgramResult {
  DWORD exitCode = STILL_ACTIVE;
  std::string output;
};

/// Runs the screen reader of a process of its own on a window: it lists the window's children, or presses the
/// one of that name.
ProgramResult RunClientProgram(HWND window, const std::string& name = "");

}  // namespace snip::test
