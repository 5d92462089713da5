#pragma once

#include <string>

namespace snip {

// What the system lets this process do, and others with its file.

/// Whether the process has its user's full rights; nothing is known of it, and true, on systems that do not
/// split them.
bool RunsElevated();
/// Whether administrators' processes look past what is registered for one user, as on systems that split
/// rights.
bool RightsAreSplit();
/// Whether the system keeps what the process writes to protected folders in a store of the user's own.
bool WritesAreVirtual();
/// Whether users could write or replace the file without administrators' rights.
bool ReplaceableByOrdinaryUsers(const std::wstring& file);

}  // namespace snip
