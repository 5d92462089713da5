#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/system/SafeWrite.h"
#include "history/SystemFiles.h"
#include "history/VersionFolder.h"

namespace snip {

/// The history of a library, which Snipstore shares; nothing when the system has no place for histories, and
/// for files of other names than libraries have.
std::optional<VersionFolder> HistoryOf(Files& files, const std::string& path);

/// Writes a library as WriteFileSafely does, and keeps the file before and the new one in its history. A
/// history that fails does not keep the library from being written.
void WriteLibraryFile(const std::string& path, std::string_view bytes, Existing existing);

}  // namespace snip
