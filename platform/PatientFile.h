#pragma once

#include <optional>
#include <string>

#include "platform/FileStamp.h"
#include "platform/Handle.h"

namespace snip {

/// A full path as the system takes it without its old limit of 260 characters, if it is one that can be given
/// so.
std::wstring LongPath(std::wstring path);

/// Nothing when it cannot be told whether there is such a file.
std::optional<FileStamp> StampOfFile(const std::wstring& path);

/// In units of 100 ns since 1970, UTC.
std::int64_t TicksOf(const FILETIME& time);

/// Has `attempt`, which tells by the system's last error why it failed, repeated for 1.4 s while that is
/// because another program has the file: mostly one that looks through new and changed files, or another
/// instance of this one.
template <class Attempt>
bool Patiently(Attempt attempt) {
  constexpr DWORD attempts = 10;
  constexpr DWORD pauseMs = 25;  // and one more each time
  for (DWORD failed = 1; !attempt(); ++failed) {
    const DWORD error = GetLastError();
    if (failed > attempts || (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION)) return false;
    Sleep(failed * pauseMs);
  }
  return true;
}

}  // namespace snip
