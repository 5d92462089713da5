#pragma once

#include <windows.h>

#include <array>
#include <optional>
#include <span>
#include <string>

#include "app/AddInIdentity.h"
#include "app/RegistrationRules.h"

namespace snip {

// The program's entries in the registry as the COM server of `Connect`. The system redirects the 32-bit
// program to the view of the 32-bit environment. No type library is entered: the environment has its own.

/// Enters `program`, a full path, below `classes`, the classes' root key; false, with nothing left behind,
/// when the registry refuses.
bool RegisterClass(HKEY classes, const std::wstring& program);
/// Takes away what `RegisterClass` enters, and nothing else; false when something of it is still there. What
/// a copy for the other view of the registry needs stays.
bool UnregisterClass(HKEY classes);

/// The roots under which the program may be registered: of the machine and, where that is not allowed, of the
/// user.
std::array<HKEY, 2> RegistrationRoots();

/// Registers the running program under "Software\Classes" of the first root that may be written, and tells
/// its index; nothing when none of them takes it.
std::optional<std::size_t> RegisterServer(std::span<const HKEY> roots);

enum class Copies { Own, All };
/// Takes the program away from all roots; with `Copies::Own` another copy of it that is there stays
/// registered, and that is no failure.
bool UnregisterServer(std::span<const HKEY> roots, Copies copies = Copies::Own);
/// Whether some copy is registered, for programs of either width.
bool AnyRegistered(std::span<const HKEY> roots);

/// Registers the running program once more when its folder was moved, or another copy was the last; whether
/// it did.
bool RegisterWhereMoved(std::span<const HKEY> roots);

// The libraries that VBA's editor loads. Their classes are the user's, as the editor's list of add-ins is,
// and go to the view of the registry that Office of their width has.

/// The library beside the program; empty when there is none.
std::wstring LibraryPath(const VbaLibrary& library);
/// Enters those that are there; false when the registry refuses.
bool RegisterLibraries();
/// Whether one of them is there, but no file for its class.
bool LibraryMissing();
/// Whether its class is this folder's, or nobody's for want of a file.
bool LibraryIsOwn(const VbaLibrary& library);
/// False when something of it is still there.
bool UnregisterLibrary(const VbaLibrary& library);

/// Deletes a key without values and subkeys below `root`; whether it did. `view` of the registry is 0 for the
/// program's own.
bool DeleteKeyIfEmpty(HKEY root, const std::string& key, REGSAM view = 0);

}  // namespace snip
