#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "history/Files.h"

namespace snip {

/// How a version came into being. The names of files tell all but ordinary saves.
enum class VersionTag {
  Saved,
  Outside,  ///< Found on the disk, written by another program.
  Cut,      ///< A damaged file.
  Unsaved,  ///< Changes that were not saved: discarded, or left when the program ended abruptly.
};

/// One state of a library that the history keeps.
struct Version {
  UtcTime time;  ///< Names and orders the versions.
  VersionTag tag = VersionTag::Saved;
  std::uint64_t size = 0;            ///< Bytes.
  std::optional<UtcTime> written{};  ///< The file's time, if known.

  /// When the version was made. This may be earlier than `time`: after a clock that was ahead is set back,
  /// new versions still get later names, to keep their order.
  UtcTime CameAbout() const { return written && time > *written + std::chrono::days(1) ? *written : time; }
  friend bool operator==(const Version&, const Version&) = default;
};

/// The name of a version's file: "20260709-140355123.bns", with "-unsaved" and the like before the extension.
std::string FileNameOf(const Version& version);
/// The version that a file name describes; nothing for other files. Size and file time are not set.
std::optional<Version> VersionOfFileName(std::string_view file);

/// "outside", "cut" or "unsaved"; empty for an ordinary save.
std::string_view NameOf(VersionTag tag);

}  // namespace snip
