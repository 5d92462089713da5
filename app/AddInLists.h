#pragma once

#include "app/RegistrationRules.h"

namespace snip {

// Where the development environments look for add-ins: Visual Basic 5 in "vbaddin.ini" of the Windows
// directory, Visual Basic 6 there and in the user's part of the registry, VBA's editor in that part alone.

/// Enters the program in "vbaddin.ini", listed but not loaded at the environment's start. Whether that could
/// be written is not examined.
void RegisterAddIn();
/// Enters it likewise in the registry, and what VBA's editor loads of it. An entry that is there stays as its
/// user has set it. False when something could not be written.
bool RegisterInKeys();
/// Whether "vbaddin.ini" lists it, loaded at the start or not.
bool AddInRegistered();
/// For whom "vbaddin.ini" lists it, as far as can be found out.
Entered WhereAddInIsRegistered();
/// Takes it out of the lists, with what VBA's editor loads of it. False when one of them still has it.
bool UnregisterAddIn();
/// Takes out of VBA's lists what belongs to this copy, while another one stays in the others. False when one
/// of them still has it.
bool UnregisterOwnLibraries();

}  // namespace snip
