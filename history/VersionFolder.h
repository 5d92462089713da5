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
  std::uint64_t bytes = std::uint64_t{64} << 20U;  ///< but at most so many bytes; the newest always.
};

/// The limits that the user has set. `read` returns the text of a value, empty if there is none. A text that
/// is not a number leaves the default.
HistoryLimits LimitsFrom(const std::function<std::string(const char* name)>& read);

/// The file with the library that is being saved.
inline constexpr std::string_view kPendingSave = "pending.new";

/// The file with the path that the library is being renamed to. The versions may have been moved there
/// already.
inline constexpr std::string_view kRenamedTo = "renamed.txt";

/// The versions of one library: a folder with one file each. Only hashes are cached, because other programs
/// may change or remove the folder at any time.
class VersionFolder {
 public:
  /// `root` holds the folders of all libraries; `library` is the full path of the library's file.
  VersionFolder(Files& files, const std::string& root, std::string library);

  const std::string& library() const { return library_; }
  const std::string& path() const { return path_; }
  std::string File(std::string_view name) const { return path_ + "/" + std::string(name); }

  /// Creates the folder, with "path.txt", which names the library.
  bool Make();
  /// The library that a history's folder belongs to; nothing if the folder does not say.
  static std::optional<std::string> LibraryOf(Files& files, const std::string& folder);
  /// Takes over the files from the library's former name, except drafts.
  void TakeFrom(VersionFolder& former);

  /// The newest first.
  std::vector<Version> Versions();
  std::optional<std::string> Read(const Version& version);

  /// Keeps a state, unless the history has it, and returns its version; nothing if it could not be written.
  /// Equal contents are kept once: a saved state replaces an equal older one. `time` is when the state was
  /// made, if not now; versions keep the order in which they were added, whatever the clock says.
  std::optional<Version> Keep(std::string_view bytes, VersionTag tag,
                              std::optional<UtcTime> time = std::nullopt);
  /// The same for a file of this folder with exactly those bytes, which becomes the version's file or is
  /// removed. `hash` is that of the bytes, if known.
  std::optional<Version> KeepFile(std::string_view name, std::string_view bytes, VersionTag tag,
                                  std::optional<UtcTime> time = std::nullopt,
                                  std::optional<std::uint64_t> hash = std::nullopt);
  /// Whether the newest version has that hash, as far as its hash is cached. Lists the folder but reads no
  /// file.
  bool NewestIs(std::uint64_t hash);

  /// Removes the versions beyond the limits.
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
      hashes_;  ///< Of versions whose contents have been read, by file name.
};

/// The end of a history folder's name, which is the same for all libraries in one folder. The name begins
/// with the library's readable name.
std::string MarkOfFolder(std::string_view identityOfFolder);

}  // namespace snip
