#include "platform/SystemLibrary.h"

namespace snip {

// By its full path, which systems of all ages take; with the altered order, what the library needs is looked
// for beside it first, and not beside the program.
HMODULE LoadSystemLibrary(const std::string& name) {
  std::string path(MAX_PATH, '\0');
  const UINT length = GetSystemDirectoryA(path.data(), static_cast<UINT>(path.size()));
  if (length == 0 || length >= path.size()) return nullptr;
  path.resize(length);
  return LoadLibraryExA((path + "\\" + name).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace snip
