#pragma once

#include <string>
#include <vector>

#include "cli/system/CodePage.h"
#include "cli/system/Failure.h"
#include "cli/system/Terminal.h"

namespace snip {

/// Runs a command line. `arguments` are UTF-8, without the program's name.
ExitCode RunCommandLine(std::vector<std::string> arguments, Terminal& terminal, const CodePage& page);

}  // namespace snip
