#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "history/Files.h"

namespace snip {

/// How a version came about. The file of any but an ordinary save says so in its name.
enum class VersionTag {
  Saved,
  Outside,  ///< Found on the disk, written by another program.
  Cut,      ///< A damaged file.
  Unsaved,  ///< Changes that were not saved: thrown away, or left by a program that ended in the midst.
};

/// One state of a library that the history keeps.
struct Version {
  UtcTime time;
  VersionTag tag = VersionTag::Saved;
  std::uint64_t size = 0;  ///< Bytes.

  friend bool operator==(const Version&, const Version&) = default;
};

/// The name of a version's file: "20260709-140355123.bns", with "-unsaved" and the like before the extension.
std::string FileNameOf(const Version& version);
/// The version of a file name; nothing for other files. Its size is 0.
std::optional<Version> VersionOfFileName(std::string_view file);

/// "outside", "cut" or "unsaved"; empty for an ordinary save.
std::string_view NameOf(VersionTag tag);

}  // namespace snip
