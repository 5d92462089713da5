#pragma once

#include <optional>
#include <string>

namespace snip {

/// Runs a command line of the system's shell and returns what it prints; nothing if it fails.
std::optional<std::string> OutputOf(const std::string& command);

}  // namespace snip
