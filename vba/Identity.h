#pragma once

#include "app/AddInIdentity.h"

namespace snip::vba {

inline constexpr const wchar_t* kEntryCaption = L"" SNIPSTORE_NAME;
inline constexpr const VbaLibrary& kThisLibrary = kVbaLibraries[sizeof(void*) == 8 ? 1 : 0];

}  // namespace snip::vba
