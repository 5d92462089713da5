#pragma once

#include <optional>
#include <string>

#include "platform/FileStamp.h"
#include "platform/Handle.h"
#include "platform/Patience.h"

namespace snip {

/// A full path as the system takes it without its old limit of 260 characters, if it is one that can be given
/// so.
std::wstring LongPath(std::wstring path);

/// Nothing when it cannot be told whether there is such a file.
std::optional<FileStamp> StampOfFile(const std::wstring& path);

FileStamp StampOf(const WIN32_FIND_DATAW& found);

/// In units of 100 ns since 1970, UTC.
std::int64_t TicksOf(const FILETIME& time);

/// Has `attempt`, which tells by the system's last error why it failed, repeated for 1.4 s, if `patience`
/// lasts that long, while that is because another program has the file: mostly one that looks through new
/// and changed files, or another instance of this one.
template <class Attempt>
bool Patiently(Patience& patience, Attempt attempt) {
  constexpr int attempts = 10;
  constexpr Patience::Duration pause{25};  // and one more each time
  for (int failed = 1; !attempt(); ++failed) {
    const DWORD error = GetLastError();
    if (failed > attempts || (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION)) return false;
    const Patience::Duration wait = patience.Take(failed * pause);
    if (wait == Patience::Duration::zero()) return false;
    Sleep(static_cast<DWORD>(wait.count()));
  }
  return true;
}

/// Opens a file from its beginning to its end. `share` is what other programs may do meanwhile. The name of
/// one just deleted is only free when the last program that has it open lets go.
UniqueFile OpenPatiently(Patience& patience, const std::wstring& path, DWORD access, DWORD share,
                         DWORD disposition);

/// Bytes. No library is larger, and a 32-bit process has no room for much more.
inline constexpr LONGLONG kLargestFile = LONGLONG{256} << 20U;

}  // namespace snip
