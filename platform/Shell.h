#pragma once

#include <windows.h>
#include <shellapi.h>

#include <string>
#include <vector>

namespace snip {

/// Opens a file or an address with the program that the system has for it. Silent when there is none.
void ShellOpen(const std::string& path);

/// The paths of dropped files, in the order of the drop.
std::vector<std::string> DroppedFiles(HDROP files);

}  // namespace snip
