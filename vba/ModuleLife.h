#pragma once

namespace snip::vba {

// The library stays loaded as long as others hold an object or a lock of it. All of its objects are created
// by `operator new`, which counts them.

void LockModule();
void UnlockModule();
bool ModuleUsed();

}  // namespace snip::vba
