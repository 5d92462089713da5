#pragma once

#include <functional>

#include "app/StartMode.h"
#include "platform/MessageFunction.h"
#include "platform/Registry32.h"

namespace snip {

/// What a start of the process does. A component does nothing by itself. The first stand-alone start enters
/// the program in the development environment's list of add-ins and says so, and opens no window; every
/// later one opens the main window.
void StartUp(StartMode mode, const Registry32& registry, const ShowMessageFunction& showMessage,
             const std::function<void()>& showMainWindow);

/// Enters the program in "vbaddin.ini" of the Windows directory, listed but not loaded at the environment's
/// start. Whether that could be written is not examined.
void RegisterAddIn();

}  // namespace snip
