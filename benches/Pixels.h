#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace snip::bench {

/// A window's inner pixels as it has painted them, row by row from the bottom.
std::vector<std::uint32_t> Pixels(HWND window);

}  // namespace snip::bench
