#pragma once

#include <filesystem>
#include <string>

namespace snip {

/// A path from the command line, which is UTF-8 on Windows and whatever bytes the caller gave elsewhere.
std::filesystem::path ToPath(const std::string& utf8);
/// A path for messages and JSON: always UTF-8.
std::string ToUtf8(const std::filesystem::path& path);

}  // namespace snip
