#pragma once

#include <windows.h>
#include <oleauto.h>

#include <stdexcept>
#include <string>

#include "platform/Com.h"
#include "platform/Win32Text.h"

namespace snip::test {

/// Registers the type library with the environment's interfaces for add-ins, as an environment does when it
/// starts: calls between processes are passed on by it. For test prefixes only: on a machine with a real
/// environment it would take the place of the environment's own.
inline void RegisterHostTypeLibrary() {
  const std::string path = ProgramDirectory() + "\\HostInterfaces.tlb";
  ComPtr<ITypeLib> library;
  if (FAILED(LoadTypeLibEx(std::wstring(path.begin(), path.end()).c_str(), REGKIND_REGISTER, library.Put())))
    throw std::runtime_error("no type library");
}
inline void UnregisterHostTypeLibrary() {
  constexpr GUID id{0xEF404E00, 0xEDA6, 0x101A, {0x8D, 0xAF, 0x00, 0xDD, 0x01, 0x0F, 0x7E, 0xBB}};
  UnRegisterTypeLib(id, 5, 0, 0, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
}

}  // namespace snip::test
