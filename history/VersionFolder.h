#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "history/Files.h"
#include "history/Version.h"

namespace snip {

/// How much is kept of one library.
struct HistoryLimits {
  std::size_t versions = 50;                       ///< The newest ones,
  std::size_t days = 30;                           ///< the first of each of the last days that have any,
  std::uint64_t bytes = std::uint64_t{64} << 20U;  ///< and of these no more than that; the newest always.
};

/// The limits that the user has set; `read` gives the text of a value, empty without one. What is no number
/// leaves the default.
HistoryLimits LimitsFrom(const std::function<std::string(const char* name)>& read);

/// A file of the folder: what is being saved.
inline constexpr std::string_view kPendingSave = "pending.new";

/// Another: the path that its library is being renamed to. The versions may be that library's already.
inline constexpr std::string_view kRenamedTo = "renamed.txt";

/// The versions of one library, each a file of its own in a folder of their own. Nothing is remembered but
/// hashes: the folder may be changed or removed by others at any time.
class VersionFolder {
 public:
  /// `root` holds the folders of all libraries; `library` is the full path of the library's file.
  VersionFolder(Files& files, const std::string& root, std::string library);

  const std::string& library() const { return library_; }
  const std::string& path() const { return path_; }
  std::string File(std::string_view name) const { return path_ + "/" + std::string(name); }

  /// Makes the folder, with "path.txt" to tell whose it is.
  bool Make();
  /// The library of a history's folder; nothing when that does not tell.
  static std::optional<std::string> LibraryOf(Files& files, const std::string& folder);
  /// Takes over what the library had under its former name, but for drafts.
  void TakeFrom(VersionFolder& former);

  /// The newest first.
  std::vector<Version> Versions();
  std::optional<std::string> Read(const Version& version);

  /// Keeps a state, unless the history has it, and returns the version that holds it; nothing when it could
  /// not be written. Equal contents are kept once: the state of a save takes the place of an equal older one.
  /// `time` is when the state came about, if not now; versions keep the order in which they came, whatever
  /// the clock says.
  std::optional<Version> Keep(std::string_view bytes, VersionTag tag,
                              std::optional<UtcTime> time = std::nullopt);
  /// The same for a file of this folder that holds exactly those bytes; the file is gone afterwards. `hash`
  /// is theirs, if the caller has it.
  std::optional<Version> KeepFile(std::string_view name, std::string_view bytes, VersionTag tag,
                                  std::optional<UtcTime> time = std::nullopt,
                                  std::optional<std::uint64_t> hash = std::nullopt);
  bool Keeps(std::string_view bytes);
  /// Whether the newest version, as far as its contents have been seen, has that hash. Reads no file but the
  /// folder.
  bool NewestIs(std::uint64_t hash);

  /// Removes what is beyond the limits.
  void Prune(const HistoryLimits& limits);

 private:
  struct Kept {
    std::optional<Version> version;
    bool newest = false;
  };

  std::string FileOf(const Version& version) const { return File(FileNameOf(version)); }
  Kept Find(const std::vector<Version>& versions, std::string_view bytes, std::uint64_t hash);
  std::optional<std::uint64_t> HashOf(const Version& version);
  template <class Place>
  std::optional<Version> Keep(std::string_view bytes, std::uint64_t hash, VersionTag tag,
                              std::optional<UtcTime> time, Place place);

  Files& files_;
  std::string library_;
  std::string path_;
  void Remember(const std::string& file, std::uint64_t hash);
  std::optional<std::uint64_t> Remembered(const std::string& file) const;

  std::vector<std::pair<std::string, std::uint64_t>>
      hashes_;  ///< Of versions whose contents have been seen, by file name.
};

/// What the folder of a library is called begins with its readable name and ends with this text for all
/// libraries of the folder in which the library lies.
std::string MarkOfFolder(std::string_view identityOfFolder);

}  // namespace snip
