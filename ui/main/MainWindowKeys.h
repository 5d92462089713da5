#pragma once

#include <string>

#include "platform/Handle.h"
#include "ui/main/MainWindowCommands.h"

namespace snip {

/// The keys that work wherever the focus is: those of the buttons, which press them, and others.
UniqueAccelerators MakeAccelerators();

/// The shortcut of a command as users read it, such as "Ctrl+Shift+N"; empty if it has none. Names letters,
/// digits, Enter and function keys only.
std::string KeysOf(int command);

}  // namespace snip
