#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "history/BackgroundWork.h"
#include "history/SafeSave.h"
#include "library/LibraryStore.h"

namespace snip {

/// Something about a library that its user may want to know.
struct LibraryEvent {
  enum class Kind {
    SaveFailed,      ///< The file is not what was saved.
    SaveCompleted,   ///< An interrupted save has been completed.
    UnsavedFound,    ///< Changes that were never saved are the history's version of that time.
    ChangedOutside,  ///< Another program has changed the file of the open library.
    HistoryFailed,   ///< The history cannot be written. Told once.
    Saved,           ///< After a save that failed, memory and file are the same again.
  };
  Kind kind = Kind::SaveFailed;
  std::string path;  ///< The library's, as its store writes it.
  std::optional<Version> version{};

  friend bool operator==(const LibraryEvent&, const LibraryEvent&) = default;
};

/// The library folder with a history of every library beside it. Files are saved, read and listed as the
/// folder does it; before and after that versions are kept and interrupted saves completed. When the history
/// fails, the folder works as without it.
///
/// Libraries may be opened, and versions read, in another thread; all else belongs to the window's.
class LibraryKeeper : public LibraryStore {
 public:
  struct Parts {
    LibraryStore& folder;
    Files& files;
    std::string root;  ///< Where the histories are, as `Files` takes it.
    /// A path of the library store as `Files` takes it.
    std::function<std::string(const std::string&)> pathForFiles;
    std::function<std::string(const std::string&)> pathFromFiles;  ///< The other way.
    std::function<HistoryLimits()> limits;
  };

  explicit LibraryKeeper(Parts parts);

  std::vector<std::string> Names() const override;
  std::string PathOf(const std::string& name) const override { return parts_.folder.PathOf(name); }
  bool Exists(const std::string& path) const override { return parts_.folder.Exists(path); }
  std::optional<FileStamp> Stamp(const std::string& path) const override { return parts_.folder.Stamp(path); }
  std::unique_ptr<ByteSource> Open(const std::string& path) const override;
  std::unique_ptr<ByteSource> OpenToSearch(const std::string& path) const override;
  bool Replace(const std::string& path, ByteSource&& bytes) override;
  /// Begins no history: a library that could not be made must not be made by the next start.
  bool Create(const std::string& path, ByteSource&& bytes) override;
  /// The history goes along.
  bool Rename(const std::string& path, const std::string& newPath) override;
  void OpenedOrSaved(const std::string& path) override;
  bool ThrownAway(ByteSource&& bytes) override;

  /// The file of the open library; empty before one is open.
  const std::string& openPath() const { return openPath_; }
  /// The history of a library.
  VersionFolder HistoryOf(const std::string& path) const;

  /// Looks for what programs that ended without a save have left of any library.
  void FindAbandonedDrafts();

  /// Removes what the open library's history has beyond the limits since it was opened, saved or changed by
  /// another program; for when nobody waits.
  void Prune();

  /// Writes the library as it is in memory, in the background. False when the last one is not written yet.
  bool WriteDraft(std::string bytes);
  bool WritesDraft() const { return drafting_.Works(); }
  bool ReadsOutsideChange() const { return looking_.Works(); }
  /// Whether a draft could not be written since the last call.
  bool TakeDraftFailure() { return draftFailed_.exchange(false); }
  /// The library is saved or left: there is nothing more to be drafted.
  void DropDraft();

  /// Looks whether another program has changed the open library's file since it was read or written here, and
  /// keeps that in the background. True when it has to be looked at once more, because either may not be
  /// done.
  bool LookForOutsideChange();

  /// What has happened since the last call, the oldest first.
  std::vector<LibraryEvent> TakeEvents();
  bool hasEvents() const { return hasEvents_; }

 private:
  class WatchedBytes;
  struct OutsideChange {
    std::string path;
    KnownContent before, now;
  };

  void Tell(LibraryEvent event) const;
  void Recover(VersionFolder& folder, const std::string& path) const;
  void FinishRename(VersionFolder& former, const std::string& library) const;
  SaveOutcome SaveWithHistory(const std::string& path, std::string_view bytes);
  void TakeAbandonedDrafts(VersionFolder& folder, const std::string& path) const;
  void ClaimDraft(const VersionFolder& folder);
  void MoveDraft(VersionFolder& folder);
  void ReadChange(const KnownContent& before, const FileStamp& stamp);
  void TakeChange();
  std::optional<std::string> StorePathOf(const std::string& library) const;
  void Learn(const std::string& path, const FileStamp& stamp, std::uint64_t hash) const;
  std::optional<KnownContent> Known(const std::string& path) const;

  Parts parts_;
  std::string openPath_;
  std::unique_ptr<VersionFolder> saved_;  ///< Of the library that was saved last.
  bool mayBePruned_ = false;              ///< The open library's history.
  std::unique_ptr<Held> draftClaim_;
  std::string draftPath_;      ///< Empty when none can be written.
  bool mayHaveDraft_ = false;  ///< There may be a file of that path.
  std::atomic<bool> draftFailed_ = false;
  std::string failedSave_;               ///< The library whose last save failed; empty when none did.
  FileStamp seen_;                       ///< Of a file that another program has changed.
  std::optional<OutsideChange> change_;  ///< What has been read of it.
  mutable std::mutex mutex_;             ///< Of the following.
  mutable std::vector<std::pair<std::string, KnownContent>> known_;  ///< By path.
  mutable std::vector<LibraryEvent> events_;
  mutable std::atomic<bool> hasEvents_ = false;
  mutable bool historyFailed_ = false;
  // Last, because they use the others.
  BackgroundWork drafting_;
  BackgroundWork looking_;
};

}  // namespace snip
