#include "platform/PatientFile.h"

#include <utility>

namespace snip {

std::wstring LongPath(std::wstring path) {
  const bool onDrive =
      path.size() > 2 && path[1] == L':' && path[2] == L'\\' && path.find(L'/') == std::wstring::npos;
  return onDrive ? L"\\\\?\\" + std::move(path) : std::move(path);
}

}  // namespace snip
