#pragma once

#include <string>
#include <string_view>

namespace snip {

enum class Existing { Replace, Keep };

/// Writes a file in one step: the bytes go into a file beside it that then takes its place, so that whatever
/// happens, the old or the new one is there in whole. Symbolic links are followed, permissions kept. Throws a
/// Failure: Refused where the file exists and is to be kept.
void WriteFileSafely(const std::string& path, std::string_view bytes, Existing existing);

}  // namespace snip
