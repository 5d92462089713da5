#pragma once

#include "find/Folding.h"

namespace snip {

/// For the system's ANSI code page.
Folding SystemFolding();

}  // namespace snip
