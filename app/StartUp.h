#pragma once

#include <functional>

#include "app/StartMode.h"
#include "platform/MessageFunction.h"
#include "platform/Registry32.h"

namespace snip {

/// What a start of the process does that was not made to change its registration. A component does nothing by
/// itself. The first stand-alone start enters the program in the development environment's list of add-ins,
/// has it registered as the server that the environment then asks for, says so, and opens no window; every
/// later one opens the main window.
void StartUp(StartMode mode, const Registry32& registry, const ShowMessageFunction& showMessage,
             const std::function<bool()>& registerServer, const std::function<void()>& showMainWindow);

/// Enters the program in "vbaddin.ini" of the Windows directory, listed but not loaded at the environment's
/// start. Whether that could be written is not examined.
void RegisterAddIn();
/// Whether it is entered there, loaded at the start or not.
bool AddInRegistered();
void UnregisterAddIn();

}  // namespace snip
