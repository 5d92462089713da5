#pragma once

#include <span>
#include <string>

namespace snip {

/// How the process was started.
enum class StartMode {
  Standalone,  ///< By a user.
  Component,   ///< By COM, to serve an automation client; everything then comes from that client.
};

/// COM starts a local server with "-Embedding" (or "/Embedding", in any letter case) behind its command line.
/// `arguments` are the command line's words without the program's own name.
StartMode StartModeFromArguments(std::span<const std::string> arguments);

}  // namespace snip
