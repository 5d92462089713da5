#pragma once

#include <span>
#include <string>

namespace snip {

/// What the process was started for.
enum class StartMode {
  Standalone,  ///< By a user, to work with.
  Component,   ///< By COM, to serve an automation client; everything then comes from that client.
  Register,    ///< To enter the program in the registry as a COM server.
  Unregister,  ///< To take that away again.
};

/// COM starts a local server with "-Embedding" behind its command line; "-RegServer" and "-UnregServer" are
/// the customary switches of one. Each may have "/" for "-" and any letter case; the first one counts.
/// `arguments` are the command line's words without the program's own name.
StartMode StartModeFromArguments(std::span<const std::string> arguments);

/// Whether "/Silent" is among the arguments: registering and unregistering then show no message.
bool IsSilent(std::span<const std::string> arguments);

}  // namespace snip
