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

/// A library that VBA's editor loads, and its class: an Office of each width finds its own.
struct VbaLibrary {
  const char* file;
  const char* progId;
  CLSID classId;
  REGSAM view;       ///< Of the registry, in which that Office looks for classes.
  const char* list;  ///< Its list of add-ins, below HKEY_CURRENT_USER.
};
inline constexpr VbaLibrary kVbaLibraries[] = {
    {"BnSnipstoreVba32.dll",
     "BnSnipstoreVba32.Connect",
     {0x29D1EBB0, 0xB330, 0x43EE, {0xBB, 0x23, 0x70, 0xF8, 0x43, 0xA0, 0x00, 0x39}},
     KEY_WOW64_32KEY,
     R"(Software\Microsoft\VBA\VBE\6.0\Addins)"},
    {"BnSnipstoreVba64.dll",
     "BnSnipstoreVba64.Connect",
     {0x5FAE2F70, 0xA841, 0x4897, {0xA4, 0x69, 0x5B, 0xA8, 0xF3, 0x09, 0x4B, 0xA1}},
     KEY_WOW64_64KEY,
     R"(Software\Microsoft\VBA\VBE\6.0\Addins64)"}};

}  // namespace snip
