#pragma once

#include <chrono>
#include <cstdint>

namespace snip {

using UtcTime = std::chrono::sys_time<std::chrono::milliseconds>;

/// What tells that a file has not changed, without reading it.
struct FileStamp {
  bool exists = false;
  std::uint64_t size = 0;
  std::int64_t changed = 0;  ///< In units of 100 ns since 1970, UTC.

  UtcTime time() const { return UtcTime(std::chrono::milliseconds(changed / 10000)); }
  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

}  // namespace snip
