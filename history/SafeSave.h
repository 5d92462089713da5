#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "history/Files.h"
#include "history/VersionFolder.h"

namespace snip {

// Saving a library so that a copy of it is on the disk at every moment, whatever ends the program:
//
//     the old file becomes a version, if it is none yet
//     pending.new    the new bytes, on the disk before anything else happens
//     the library    is written as it always was, by `write`
//     pending.new    becomes a version once the library reads back as it; otherwise it stays
//
// A pending.new that is found later belongs to a save that was interrupted or failed.

/// The contents that a library's file had when this program last read or wrote it.
struct KnownContent {
  FileStamp stamp;
  std::uint64_t hash = 0;

  friend bool operator==(const KnownContent&, const KnownContent&) = default;
};

/// Writes the library's file; false when not all of it is there.
using WriteLibrary = std::function<bool(std::string_view bytes)>;

struct SaveOutcome {
  bool written = false;  ///< The file holds exactly the bytes.
  bool kept = false;     ///< The history did all of its part. It never keeps the library from being written.
};

/// Makes a version of the file that a save is about to delete. False when it could not. `known` is as below.
bool KeepOldFile(Files& files, VersionFolder& folder, const std::optional<KnownContent>* known);

/// Saves under a lock that orders several programs. `known` is what this program knows of the file, and is
/// told the new contents, also those that a failed save left; null for a program that has not read the file
/// before. What is beyond the limits stays for now. Waits for other programs no longer than `wait` before the
/// library is written, and as long again from then on.
SaveOutcome SaveSafely(Files& files, VersionFolder& folder, std::string_view bytes, const WriteLibrary& write,
                       std::optional<KnownContent>* known,
                       Patience::Duration wait = Patience::Duration::max());

struct Recovery {
  enum class Kind {
    Nothing,
    Completed,  ///< The file was missing or cut, and holds what was to be saved now.
    Unsaved,    ///< The file is another one: what was to be saved is the newest "-unsaved" version.
  };
  Kind kind = Kind::Nothing;
  std::optional<Version> version{};  ///< That holds what was to be saved.
};

/// Whether a save of the library was interrupted.
bool HasPendingSave(Files& files, const VersionFolder& folder);
/// Completes or keeps an interrupted save. What cannot be done now is left for the next time.
Recovery RecoverSave(Files& files, VersionFolder& folder, const WriteLibrary& write);

/// Whether bytes are a library with its end, not one that broke off.
bool IsWholeLibrary(std::string_view bytes);

}  // namespace snip
