#include "platform/Shell.h"

#include <cstddef>

namespace snip {

void ShellOpen(const std::string& path) {
  ShellExecuteA(GetDesktopWindow(), "open", path.c_str(), "", "", SW_SHOWNORMAL);
}

std::vector<std::string> DroppedFiles(HDROP files) {
  std::vector<std::string> paths(DragQueryFileA(files, 0xFFFFFFFF, nullptr, 0));
  for (UINT i = 0; i < paths.size(); ++i) {
    std::string& path = paths[i];
    path.resize(DragQueryFileA(files, i, nullptr, 0) + std::size_t{1});
    path.resize(DragQueryFileA(files, i, path.data(), static_cast<UINT>(path.size())));
  }
  return paths;
}

}  // namespace snip
