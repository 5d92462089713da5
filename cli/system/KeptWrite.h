#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/system/SafeWrite.h"
#include "history/SystemFiles.h"
#include "history/VersionFolder.h"

namespace snip {

/// The history of a library, shared with Snipstore; nothing if the system has no folder for histories, or if
/// the file is not named like a library.
std::optional<VersionFolder> HistoryOf(Files& files, const std::string& path);

/// Writes a library like WriteFileSafely, and keeps the old and the new file in its history. If the history
/// fails, the library is written all the same.
void WriteLibraryFile(const std::string& path, std::string_view bytes, Existing existing);

}  // namespace snip
