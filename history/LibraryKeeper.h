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

/// An event about a library that the user may want to know.
struct LibraryEvent {
  enum class Kind {
    SaveFailed,      ///< The file does not hold what was to be saved.
    SaveCompleted,   ///< An interrupted save has been completed.
    UnsavedFound,    ///< Changes that were never saved are in the history, as the version of that time.
    ChangedOutside,  ///< Another program has changed the file of the open library.
    HistoryFailed,   ///< The history cannot be written. Reported once.
    Saved,           ///< A save has succeeded after one that failed.
  };
  Kind kind = Kind::SaveFailed;
  std::string path;  ///< The library's, as its store writes it.
  std::optional<Version> version{};

  friend bool operator==(const LibraryEvent&, const LibraryEvent&) = default;
};

/// The library folder, with a history of every library. It saves, reads and lists files through the folder,
/// and before and after that keeps versions and completes interrupted saves. If the history fails, the folder
/// works as it does without one.
///
/// Opening libraries and reading versions may be done in another thread; everything else belongs to the
/// window's thread.
class LibraryKeeper : public LibraryStore {
 public:
  struct Parts {
    LibraryStore& folder;
    Files& files;
    std::string root;  ///< The folder of the histories, as a path for `Files`.
    /// Converts a path of the library store to one for `Files`.
    std::function<std::string(const std::string&)> pathForFiles;
    std::function<std::string(const std::string&)> pathFromFiles;  ///< Converts it back.
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
  /// Does not begin a history: if creating the file fails, the next start must not complete it.
  bool Create(const std::string& path, ByteSource&& bytes) override;
  /// Renames the history, too.
  bool Rename(const std::string& path, const std::string& newPath) override;
  void OpenedOrSaved(const std::string& path) override;
  bool ThrownAway(ByteSource&& bytes) override;

  /// The path of the open library's file; empty before one is opened.
  const std::string& openPath() const { return openPath_; }
  /// The history of a library.
  VersionFolder HistoryOf(const std::string& path) const;

  /// Looks for unsaved changes of any library that a program left when it ended.
  void FindAbandonedDrafts();

  /// Removes the versions of the open library that exceed the limits. Call it when the user is not waiting.
  void Prune();

  /// Writes the library as it is in memory as a draft, in the background. False if the last draft is still
  /// being written.
  bool WriteDraft(std::string bytes);
  bool WritesDraft() const { return drafting_.Works(); }
  bool ReadsOutsideChange() const { return looking_.Works(); }
  /// Whether a draft could not be written since the last call.
  bool TakeDraftFailure() { return draftFailed_.exchange(false); }
  /// The library has been saved or closed: removes its draft.
  void DropDraft();

  /// Checks whether another program has changed the open library's file since it was last read or written
  /// here, and keeps the change as a version in the background. True if it has to be called again because
  /// either may not be finished.
  bool LookForOutsideChange();

  /// The events since the last call, the oldest first.
  std::vector<LibraryEvent> TakeEvents();
  bool hasEvents() const { return hasEvents_; }

 private:
  class WatchedBytes;
  struct Draft {
    std::string path;
    std::unique_ptr<Held> claim;  ///< Null if no draft can be written.
  };
  struct OutsideChange {
    std::string path;
    KnownContent before, now;
  };

  void Tell(LibraryEvent event) const;
  void Recover(VersionFolder& folder, const std::string& path) const;
  void FinishRename(VersionFolder& former, const std::string& library) const;
  SaveOutcome SaveWithHistory(const std::string& path, std::string_view bytes);
  void TakeAbandonedDrafts(VersionFolder& folder, const std::string& path) const;
  Draft ClaimDraft(const VersionFolder& folder) const;
  void MoveDraft(VersionFolder& folder);
  void ReadChange(const KnownContent& before, const FileStamp& stamp);
  void TakeChange();
  std::optional<std::string> StorePathOf(const std::string& library) const;
  void Learn(const std::string& path, const FileStamp& stamp, std::uint64_t hash) const;
  std::optional<KnownContent> Known(const std::string& path) const;

  Parts parts_;
  std::string openPath_;
  std::unique_ptr<VersionFolder> saved_;  ///< The history of the library that was saved last.
  bool mayBePruned_ = false;              ///< The open library's history may exceed the limits.
  Draft draft_;                           ///< Of the open library.
  bool mayHaveDraft_ = false;             ///< There may be a file with its path.
  std::atomic<bool> draftFailed_ = false;
  std::string failedSave_;               ///< The library whose last save failed; empty if none did.
  FileStamp seen_;                       ///< The stamp of a file that another program has changed.
  std::optional<OutsideChange> change_;  ///< The contents read from it.
  mutable std::mutex mutex_;             ///< Guards the following.
  mutable std::vector<std::pair<std::string, KnownContent>> known_;  ///< By path.
  mutable std::vector<LibraryEvent> events_;
  mutable std::atomic<bool> hasEvents_ = false;
  mutable bool historyFailed_ = false;
  // Last, because their threads use the members above.
  BackgroundWork drafting_;
  BackgroundWork looking_;
};

}  // namespace snip
