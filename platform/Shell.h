#pragma once

#include <string>

namespace snip {

/// Opens a file or an address with the program that the system has for it. Silent when there is none.
void ShellOpen(const std::string& path);

}  // namespace snip
