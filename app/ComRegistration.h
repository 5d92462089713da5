#pragma once

#include <windows.h>

#include <array>
#include <span>
#include <string>

namespace snip {

// The program's entries in the registry as the COM server of `Connect`. The system redirects the 32-bit
// program to the view of the 32-bit environment. No type library is entered: the environment has its own.

/// Enters `program`, a full path, below `classes`, the classes' root key; false, with nothing left behind,
/// when the registry refuses.
bool RegisterClass(HKEY classes, const std::string& program);
/// Takes away what `RegisterClass` enters, and nothing else; false when something of it is still there.
bool UnregisterClass(HKEY classes);

/// The roots under which the program may be registered: of the machine and, where that is not allowed, of the
/// user.
std::array<HKEY, 2> RegistrationRoots();

/// Registers the running program under "Software\Classes" of the first root that may be written.
bool RegisterServer(std::span<const HKEY> roots);
/// Takes the program away from all of them.
bool UnregisterServer(std::span<const HKEY> roots);

}  // namespace snip
