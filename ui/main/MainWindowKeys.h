#pragma once

#include <string>

#include "platform/Handle.h"
#include "ui/main/MainWindowCommands.h"

namespace snip {

/// The keys that do the same wherever the focus is: those of the buttons, which press them, and others.
UniqueAccelerators MakeAccelerators();

/// The keys of a command that is a button's or the output menu's, as a person reads them; empty without any.
std::string KeysOf(int command);

}  // namespace snip
