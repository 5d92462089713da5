#pragma once

#include <string>
#include <string_view>

namespace snip {

enum class Existing { Replace, Keep };

/// Writes a file atomically: the bytes go into a new file in the same folder, which then replaces the old
/// one. Follows symbolic links and keeps permissions. Throws a Failure: Refused if the file exists and
/// `existing` is Keep.
void WriteFileSafely(const std::string& path, std::string_view bytes, Existing existing);

}  // namespace snip
