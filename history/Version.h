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
  UtcTime time;  ///< By which versions are named and ordered.
  VersionTag tag = VersionTag::Saved;
  std::uint64_t size = 0;            ///< Bytes.
  std::optional<UtcTime> written{};  ///< Its file's time, if known.

  /// When it came about. After a clock that was ahead has been set right, versions are named by its time
  /// until that comes, to keep their order.
  UtcTime CameAbout() const { return written && time > *written + std::chrono::days(1) ? *written : time; }
  friend bool operator==(const Version&, const Version&) = default;
};

/// The name of a version's file: "20260709-140355123.bns", with "-unsaved" and the like before the extension.
std::string FileNameOf(const Version& version);
/// The version of a file name; nothing for other files. Its size is 0, and its file not known.
std::optional<Version> VersionOfFileName(std::string_view file);

/// "outside", "cut" or "unsaved"; empty for an ordinary save.
std::string_view NameOf(VersionTag tag);

}  // namespace snip
