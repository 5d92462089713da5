#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "platform/MessageFunction.h"

namespace snip {

/// The text of a registry value of up to 1024 bytes; nothing if the value is longer or does not exist, or if
/// the key cannot be opened for reading and writing. Shows no message.
std::optional<std::string> GetKeyValue(HKEY root, const std::string& keyName, const std::string& valueName);

/// Starts the system information program that the registry names, or tells the user that there is none. If
/// the program that is named by its full path is missing, nothing happens.
void StartSysInfo(const ShowMessageFunction& showMessage);

}  // namespace snip
