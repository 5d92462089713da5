#pragma once

#include <functional>
#include <string>

#include "app/StartMode.h"
#include "platform/MessageFunction.h"
#include "platform/Registry32.h"

namespace snip {

/// How a start has the program entered for the development environment.
struct Registration {
  /// Enters it in the list of add-ins and as the server that the environment then asks for; what the user has
  /// to be told of that.
  std::function<std::string()> enter;
  /// Enters the server once more where its file was moved, and what an earlier version has not entered.
  std::function<void()> enterAgain;
};

/// What a start of the process does that was not made to change its registration. A component does nothing by
/// itself. The first stand-alone start enters the program, says so, and opens no window; every later one
/// opens the main window.
void StartUp(StartMode mode, const Registry32& registry, const ShowMessageFunction& showMessage,
             const Registration& registration, const std::function<void()>& showMainWindow);

}  // namespace snip
