#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "platform/MessageFunction.h"

namespace snip {

/// The text of a registry value, at most 1024 bytes of it; nothing when the key cannot be opened for reading
/// and writing, or has no such value. Without any message.
std::optional<std::string> GetKeyValue(HKEY root, const std::string& keyName, const std::string& valueName);

/// Starts the system's information program where the registry says that it is, or tells the user that there
/// is none. A program that is named but missing is not started, and nothing else in its place.
void StartSysInfo(const ShowMessageFunction& showMessage);

}  // namespace snip
