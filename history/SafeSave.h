#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "history/Files.h"
#include "history/VersionFolder.h"

namespace snip {

// Saves a library so that a whole copy of it is on the disk at every moment, even if the program is ended:
//
//     the old file becomes a version, unless it is one already
//     pending.new    the new bytes, on the disk before anything else happens
//     the library    is written by `write`
//     pending.new    becomes a version once the library reads back the same; otherwise it stays
//
// A pending.new that is found later belongs to a save that was interrupted or failed.

/// The contents that a library's file had when this program last read or wrote it.
struct KnownContent {
  FileStamp stamp;
  std::uint64_t hash = 0;

  friend bool operator==(const KnownContent&, const KnownContent&) = default;
};

/// Writes the library's file; false if not all of it was written.
using WriteLibrary = std::function<bool(std::string_view bytes)>;

struct SaveOutcome {
  bool written = false;  ///< The file holds exactly the bytes.
  bool kept = false;     ///< The history was written completely; if not, the library is saved all the same.
};

/// Keeps a file that a save is about to delete as a version. False on failure. `known` is as below.
bool KeepOldFile(Files& files, VersionFolder& folder, const std::optional<KnownContent>* known);

/// Saves under a lock against other programs. `known` is what this program knows about the file; it is
/// updated, also when a save fails. It is null for a program that has not read the file before. Versions
/// beyond the limits are not removed yet. Waits for other programs at most `wait` before the library is
/// written, and at most as long again after that.
SaveOutcome SaveSafely(Files& files, VersionFolder& folder, std::string_view bytes, const WriteLibrary& write,
                       std::optional<KnownContent>* known,
                       Patience::Duration wait = Patience::Duration::max());

struct Recovery {
  enum class Kind {
    Nothing,
    Completed,  ///< The file was missing or cut off, and now holds what was to be saved.
    Unsaved,    ///< The file has other contents: what was to be saved is now the newest "-unsaved" version.
  };
  Kind kind = Kind::Nothing;
  std::optional<Version> version{};  ///< The version with what was to be saved.
};

/// Whether a save of the library was interrupted.
bool HasPendingSave(Files& files, const VersionFolder& folder);
/// Completes an interrupted save or keeps it as a version. What fails now is left for the next time.
Recovery RecoverSave(Files& files, VersionFolder& folder, const WriteLibrary& write);

/// Whether the bytes are a complete library, not one that is cut off.
bool IsWholeLibrary(std::string_view bytes);

}  // namespace snip
