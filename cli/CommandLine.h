#pragma once

#include <string>
#include <vector>

#include "cli/ExitCode.h"
#include "cli/Terminal.h"
#include "cli/text/CodePage.h"

namespace snip {

/// Does what a command line asks for. `arguments` are UTF-8, without the program's own name.
ExitCode RunCommandLine(std::vector<std::string> arguments, Terminal& terminal, const CodePage& page);

}  // namespace snip
