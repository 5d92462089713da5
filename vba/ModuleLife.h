#pragma once

namespace snip::vba {

// The library stays loaded as long as something of it is left, which others may keep: an object, for all of
// its objects are made by `operator new`, or a lock.

void LockModule();
void UnlockModule();
bool ModuleUsed();

}  // namespace snip::vba
