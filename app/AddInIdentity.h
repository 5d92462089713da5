#pragma once

#include <windows.h>

#include "version.h"

namespace snip {

/// The names by which the development environment and the registry know the add-in.
inline constexpr const char* kAddInProgId = "BnSnipstore2.Connect";
inline constexpr const char* kAddInName = SNIPSTORE_NAME;
/// Of the class `Connect`: {25E7D835-FA5D-4BBE-9850-7E945446795C}.
inline constexpr CLSID kConnectClassId{
    0x25E7D835, 0xFA5D, 0x4BBE, {0x98, 0x50, 0x7E, 0x94, 0x54, 0x46, 0x79, 0x5C}};

}  // namespace snip
