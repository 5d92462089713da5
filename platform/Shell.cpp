#include "platform/Shell.h"

#include <windows.h>
#include <shellapi.h>

namespace snip {

void ShellOpen(const std::string& path) {
  ShellExecuteA(GetDesktopWindow(), "open", path.c_str(), "", "", SW_SHOWNORMAL);
}

}  // namespace snip
