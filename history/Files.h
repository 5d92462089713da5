#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/FileStamp.h"
#include "platform/Patience.h"

namespace snip {

struct FileEntry {
  std::string name;
  FileStamp stamp;
};

/// How often, and at which intervals, to ask for a lock that another program holds.
inline constexpr int kLockAttempts = 100;
inline constexpr Patience::Duration kLockPause{30};

/// A system resource that the destructor releases.
class Held {
 public:
  Held() = default;
  virtual ~Held() = default;
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
};

/// The files and the clock that the history uses. Paths are absolute, in UTF-8, with "/" or the system's
/// separator. Any call may fail. All may be called in any thread.
class Files {
 public:
  explicit Files(std::shared_ptr<Patience> patience = std::make_shared<Patience>())
      : patience_(std::move(patience)) {}
  virtual ~Files() = default;

  /// As long as the result exists, all calls in this thread together wait for other programs at most that
  /// long.
  Patience::Limit LimitWaits(Patience::Duration all) { return {*patience_, all}; }

  /// Nothing if it is unknown whether there is such a file.
  virtual std::optional<FileStamp> Stamp(const std::string& path) = 0;
  virtual std::optional<std::string> Read(const std::string& path) = 0;
  /// Whether a file consists of exactly these bytes. Nothing if it cannot be read.
  virtual std::optional<bool> Holds(const std::string& path, std::string_view bytes) {
    const auto there = Read(path);
    return there ? std::optional(*there == bytes) : std::nullopt;
  }
  /// Creates or overwrites a file, and returns once the bytes are on the disk.
  virtual bool Write(const std::string& path, std::string_view bytes) = 0;
  /// Renames a file, atomically replacing one of the new name.
  virtual bool Move(const std::string& from, const std::string& to) = 0;
  /// Removes a file or an empty folder.
  virtual bool Remove(const std::string& path) = 0;
  /// Creates a folder and its parents. Also true if it exists already.
  virtual bool MakeFolder(const std::string& path) = 0;
  /// The entries of a folder, in any order; nothing if there is no such folder.
  virtual std::vector<FileEntry> List(const std::string& folder) = 0;
  virtual UtcTime Now() = 0;
  /// The canonical form of a path: the same for every way to write it.
  virtual std::string Identity(const std::string& path) = 0;
  /// Locks `path` against other programs as long as the result exists. Waits some seconds for them, if
  /// allowed; null if they still hold it. Where the system has no such lock, the result locks nothing. It has
  /// to be released by the same thread.
  virtual std::unique_ptr<Held> Lock(const std::string& path) = 0;
  /// Null if another program, or this one, has claimed `path` already.
  virtual std::unique_ptr<Held> Claim(const std::string& path) = 0;

 protected:
  Patience& patience() { return *patience_; }

 private:
  std::shared_ptr<Patience> patience_;
};

}  // namespace snip
