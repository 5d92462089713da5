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

/// How often a lock that another program holds is asked for, and how long after the last time.
inline constexpr int kLockAttempts = 100;
inline constexpr Patience::Duration kLockPause{30};

/// Something of the system's that is given back when this goes.
class Held {
 public:
  Held() = default;
  virtual ~Held() = default;
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
};

/// The files and the clock as the history uses them. Paths are full, in UTF-8, with "/" or the system's own
/// separator. Any call may fail, and may be made in any thread.
class Files {
 public:
  explicit Files(std::shared_ptr<Patience> patience = std::make_shared<Patience>())
      : patience_(std::move(patience)) {}
  virtual ~Files() = default;

  /// As long as the result lives, all calls of this thread together wait for other programs no longer than
  /// that.
  Patience::Limit LimitWaits(Patience::Duration all) { return {*patience_, all}; }

  /// Nothing when it cannot be told whether there is such a file.
  virtual std::optional<FileStamp> Stamp(const std::string& path) = 0;
  virtual std::optional<std::string> Read(const std::string& path) = 0;
  /// Whether a file holds exactly these bytes. Nothing when it cannot be read.
  virtual std::optional<bool> Holds(const std::string& path, std::string_view bytes) {
    const auto there = Read(path);
    return there ? std::optional(*there == bytes) : std::nullopt;
  }
  /// Makes or overwrites a file, and returns when the bytes are on the disk.
  virtual bool Write(const std::string& path, std::string_view bytes) = 0;
  /// Renames a file and replaces one of the new name in one step.
  virtual bool Move(const std::string& from, const std::string& to) = 0;
  /// A file, or an empty folder.
  virtual bool Remove(const std::string& path) = 0;
  /// Makes a folder, and those around it. True also when there is one.
  virtual bool MakeFolder(const std::string& path) = 0;
  /// What a folder holds, in any order; nothing when there is none.
  virtual std::vector<FileEntry> List(const std::string& folder) = 0;
  virtual UtcTime Now() = 0;
  /// One text for all ways to write the path of a file.
  virtual std::string Identity(const std::string& path) = 0;
  /// Keeps other programs from working at `path` as long as the result lives. Waits for them for some
  /// seconds, if it may; null when they go on. Where the system has no lock to give, nothing is held. Belongs
  /// to the thread that asked.
  virtual std::unique_ptr<Held> Lock(const std::string& path) = 0;
  /// Null when another program, or this one, holds the claim to `path` already.
  virtual std::unique_ptr<Held> Claim(const std::string& path) = 0;

 protected:
  Patience& patience() { return *patience_; }

 private:
  std::shared_ptr<Patience> patience_;
};

}  // namespace snip
