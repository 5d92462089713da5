#pragma once

#include <windows.h>

#include <string>

namespace snip {

/// Loads a library that belongs to the system, and what that one needs, from the system's directory alone: a
/// file of the same name in the program's folder, where users unpack what they download, is not looked at. It
/// stays loaded until the process ends. Null when the system has none of that name.
HMODULE LoadSystemLibrary(const std::string& name);

/// A function of one of the system's libraries; null on a system that does not have it.
template <class Function>
Function* SystemFunction(const std::string& library, const char* name) {
  const HMODULE module = LoadSystemLibrary(library);
  if (module == nullptr) return nullptr;
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace snip
