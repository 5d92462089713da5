#include "history/LibraryKeeper.h"

#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <utility>

#include "history/ContentHash.h"
#include "library/Library.h"

namespace snip {
namespace {

constexpr std::string_view kDraft = "draft";
constexpr Patience::Duration kWaitOfASave{1400};

std::string DraftName(int number) {
  return std::string(kDraft) + (number == 0 ? "" : "-" + std::to_string(number)) + ".bns";
}

bool IsDraft(const FileEntry& entry) {
  return entry.name.starts_with(kDraft) && entry.name.ends_with(kLibraryExtension);
}

}  // namespace

/// Passes a file's hash to the keeper once the file has been read to its end.
class LibraryKeeper::WatchedBytes : public ByteSource {
 public:
  WatchedBytes(std::unique_ptr<ByteSource> bytes, std::function<void(std::uint64_t)> read)
      : bytes_(std::move(bytes)), read_(std::move(read)) {}
  ~WatchedBytes() override {
    // The file may go on after the end of the library.
    try {
      std::array<char, 4096> rest{};
      while (WatchedBytes::Read(rest) > 0) continue;
      if (!bytes_->Failed()) read_(hash_.Value());
    } catch (const std::exception&) {
      return;  // then nothing is known about the file
    }
  }
  WatchedBytes(const WatchedBytes&) = delete;
  WatchedBytes& operator=(const WatchedBytes&) = delete;

  std::size_t Read(std::span<char> room) override {
    const std::size_t got = bytes_->Read(room);
    hash_.Add({room.data(), got});
    return got;
  }
  bool Failed() const override { return bytes_->Failed(); }

 private:
  std::unique_ptr<ByteSource> bytes_;
  std::function<void(std::uint64_t)> read_;
  RunningHash hash_;
};

LibraryKeeper::LibraryKeeper(Parts parts) : parts_(std::move(parts)) {}

VersionFolder LibraryKeeper::HistoryOf(const std::string& path) const {
  return {parts_.files, parts_.root, parts_.pathForFiles(path)};
}

void LibraryKeeper::Tell(LibraryEvent event) const {
  const std::lock_guard lock(mutex_);
  if (event.kind == LibraryEvent::Kind::HistoryFailed && std::exchange(historyFailed_, true)) return;
  events_.push_back(std::move(event));
  hasEvents_ = true;
}

std::vector<LibraryEvent> LibraryKeeper::TakeEvents() {
  const std::lock_guard lock(mutex_);
  hasEvents_ = false;
  return std::exchange(events_, {});
}

void LibraryKeeper::Learn(const std::string& path, const FileStamp& stamp, std::uint64_t hash) const {
  const std::lock_guard lock(mutex_);
  std::erase_if(known_, [&](const auto& known) { return known.first == path; });
  known_.emplace_back(path, KnownContent{stamp, hash});
}

std::optional<KnownContent> LibraryKeeper::Known(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  const auto found = std::ranges::find(known_, path, &std::pair<std::string, KnownContent>::first);
  return found == known_.end() ? std::nullopt : std::optional(found->second);
}

void LibraryKeeper::Recover(VersionFolder& folder, const std::string& path) const {
  const Recovery recovery = RecoverSave(parts_.files, folder, [&](std::string_view bytes) {
    return parts_.folder.Replace(path, BytesInMemory(bytes));
  });
  if (recovery.kind == Recovery::Kind::Completed) Tell({LibraryEvent::Kind::SaveCompleted, path});
  if (recovery.kind == Recovery::Kind::Unsaved)
    Tell({LibraryEvent::Kind::UnsavedFound, path, recovery.version});
}

/// Renames the history of a library whose renaming was interrupted.
void LibraryKeeper::FinishRename(VersionFolder& former, const std::string& library) const {
  const auto is = [this](const std::string& path, bool there) {
    const auto stamp = parts_.files.Stamp(path);
    return stamp && stamp->exists == there;
  };
  const auto isRenamed = [&] { return is(former.library(), false) && is(library, true); };
  if (!isRenamed()) {
    if (is(former.library(), true)) parts_.files.Remove(former.File(kRenamedTo));
    return;
  }
  if (const auto path = StorePathOf(library)) TakeAbandonedDrafts(former, *path);
  VersionFolder folder(parts_.files, parts_.root, library);
  // Another program may have been in the middle of saving a library of the former name.
  if (const auto lock = parts_.files.Lock(former.path()); lock && isRenamed()) folder.TakeFrom(former);
}

/// After an interrupted save a library's file may be missing, so that it would not be listed.
std::vector<std::string> LibraryKeeper::Names() const {
  const Patience::Limit waits = parts_.files.LimitWaits(kWaitOfASave);
  const std::string anyLibrary = parts_.pathForFiles(parts_.folder.PathOf("x"));
  const std::string identity = parts_.files.Identity(anyLibrary);
  const std::string mark =
      MarkOfFolder(std::string_view(identity).substr(0, identity.find_last_of("/\\") + 1));
  for (const FileEntry& entry : parts_.files.List(parts_.root)) {
    if (!entry.name.ends_with(mark)) continue;
    const auto library = VersionFolder::LibraryOf(parts_.files, parts_.root + "/" + entry.name);
    if (!library) continue;
    VersionFolder folder(parts_.files, parts_.root, *library);
    if (const auto renamed = parts_.files.Read(folder.File(kRenamedTo))) FinishRename(folder, *renamed);
    if (!HasPendingSave(parts_.files, folder)) continue;
    // Not needed for the open library, which is still in memory.
    if (const auto path = StorePathOf(*library); path && *path != openPath_) Recover(folder, *path);
  }
  return parts_.folder.Names();
}

/// A library's path in the store's form: the store lists the libraries of its folder by name, in its own
/// spelling. Nothing for a path that the store cannot write.
std::optional<std::string> LibraryKeeper::StorePathOf(const std::string& library) const {
  std::string_view name = std::string_view(library).substr(library.find_last_of("/\\") + 1);
  if (HasLibraryExtension(name)) name.remove_suffix(kLibraryExtension.size());
  const std::string identity = parts_.files.Identity(library);
  for (const std::string& path :
       {parts_.folder.PathOf(parts_.pathFromFiles(std::string(name))), parts_.pathFromFiles(library)}) {
    if (parts_.files.Identity(parts_.pathForFiles(path)) == identity) return path;
  }
  return std::nullopt;
}

std::unique_ptr<ByteSource> LibraryKeeper::Open(const std::string& path) const {
  const Patience::Limit waits = parts_.files.LimitWaits(kWaitOfASave);
  VersionFolder folder = HistoryOf(path);
  Recover(folder, path);
  const auto stamp = parts_.files.Stamp(folder.library());
  auto bytes = parts_.folder.Open(path);
  if (bytes == nullptr || !stamp) return bytes;
  return std::make_unique<WatchedBytes>(
      std::move(bytes), [this, path, stamp = *stamp](std::uint64_t hash) { Learn(path, stamp, hash); });
}

bool LibraryKeeper::Replace(const std::string& path, ByteSource&& bytes) {
  std::string all;
  try {
    all = bytes.ReadRest();
  } catch (const std::bad_alloc&) {
    if (!bytes.Rewind()) throw;
    return parts_.folder.Replace(path, std::move(bytes));
  }
  const SaveOutcome outcome = SaveWithHistory(path, all);
  if (!outcome.written) {
    failedSave_ = path;
    Tell({LibraryEvent::Kind::SaveFailed, path});
    return false;
  }
  if (!outcome.kept) Tell({LibraryEvent::Kind::HistoryFailed, path});
  return true;
}

SaveOutcome LibraryKeeper::SaveWithHistory(const std::string& path, std::string_view bytes) {
  const auto write = [&](std::string_view piece) {
    return parts_.folder.Replace(path, BytesInMemory(piece));
  };
  looking_.Finish();  // it holds the lock
  try {
    // Kept for the next save, which need not hash the versions again.
    if (!saved_ || saved_->library() != parts_.pathForFiles(path))
      saved_ = std::make_unique<VersionFolder>(HistoryOf(path));
    std::optional<KnownContent> known = Known(path);
    const SaveOutcome outcome = SaveSafely(parts_.files, *saved_, bytes, write, &known, kWaitOfASave / 2);
    if (known) Learn(path, known->stamp, known->hash);
    return outcome;
  } catch (const std::bad_alloc&) {
    // The history needs the whole file in memory; the library can be saved without it.
    const bool written = write(bytes);
    if (const auto stamp = parts_.files.Stamp(parts_.pathForFiles(path)); written && stamp)
      Learn(path, *stamp, ContentHash(bytes));
    return {.written = written};
  }
}

bool LibraryKeeper::Create(const std::string& path, ByteSource&& bytes) {
  return parts_.folder.Replace(path, std::move(bytes));
}

std::unique_ptr<ByteSource> LibraryKeeper::OpenToSearch(const std::string& path) const {
  return parts_.folder.Open(path);
}

void LibraryKeeper::Prune() {
  if (!mayBePruned_) return;
  const Patience::Limit waits = parts_.files.LimitWaits(Patience::Duration::zero());
  VersionFolder folder = HistoryOf(openPath_);
  const auto lock = parts_.files.Lock(folder.path());
  if (lock) folder.Prune(parts_.limits());
  mayBePruned_ = !lock;
}

void LibraryKeeper::OpenedOrSaved(const std::string& path) {
  DropDraft();
  if (failedSave_ == path) Tell({LibraryEvent::Kind::Saved, std::exchange(failedSave_, {})});
  openPath_ = path;
  mayBePruned_ = true;
  VersionFolder folder = HistoryOf(path);
  TakeAbandonedDrafts(folder, path);
  draft_ = {};  // its name may be claimed once more
  draft_ = ClaimDraft(folder);
}

LibraryKeeper::Draft LibraryKeeper::ClaimDraft(const VersionFolder& folder) const {
  constexpr int mostPrograms = 16;
  for (int number = 0; number < mostPrograms; ++number) {
    const std::string path = folder.File(DraftName(number));
    // A file that is still there could not be kept; the next start tries again.
    if (const auto stamp = parts_.files.Stamp(path); !stamp || stamp->exists) continue;
    if (auto claim = parts_.files.Claim(path)) return {path, std::move(claim)};
  }
  return {};
}

bool LibraryKeeper::Rename(const std::string& path, const std::string& newPath) {
  const Patience::Limit waits = parts_.files.LimitWaits(kWaitOfASave);
  looking_.Finish();  // it holds the lock
  VersionFolder former = HistoryOf(path), folder = HistoryOf(newPath);
  const std::string mark = former.File(kRenamedTo);
  parts_.files.Write(mark, folder.library());
  if (!parts_.folder.Rename(path, newPath)) {
    parts_.files.Remove(mark);
    return false;
  }
  if (path == openPath_) {
    openPath_ = newPath;
    MoveDraft(folder);
  }
  if (const auto lock = parts_.files.Lock(former.path())) folder.TakeFrom(former);
  if (const auto known = Known(path)) Learn(newPath, known->stamp, known->hash);
  return true;
}

/// Moves the open library's draft to another folder; one that cannot be moved stays.
void LibraryKeeper::MoveDraft(VersionFolder& folder) {
  drafting_.Finish();
  const bool made = folder.Make();
  Draft moved = ClaimDraft(folder);
  if (mayHaveDraft_ && !(made && moved.claim && parts_.files.Move(draft_.path, moved.path))) {
    if (const auto left = parts_.files.Stamp(draft_.path); !left || left->exists) return;
  }
  draft_ = std::move(moved);
}

void LibraryKeeper::FindAbandonedDrafts() {
  for (const FileEntry& entry : parts_.files.List(parts_.root)) {
    const std::string place = parts_.root + "/" + entry.name;
    if (std::ranges::none_of(parts_.files.List(place), IsDraft)) continue;
    const auto library = VersionFolder::LibraryOf(parts_.files, place);
    if (!library) continue;
    VersionFolder folder(parts_.files, parts_.root, *library);
    if (const auto path = StorePathOf(*library)) TakeAbandonedDrafts(folder, *path);
  }
}

/// Keeps the drafts of programs that ended before the user saved or chose not to.
void LibraryKeeper::TakeAbandonedDrafts(VersionFolder& folder, const std::string& path) const {
  const Patience::Limit waits = parts_.files.LimitWaits(Patience::Duration::zero());
  for (const FileEntry& entry : parts_.files.List(folder.path())) {
    if (!IsDraft(entry)) continue;
    const std::string file = folder.File(entry.name);
    const auto claim = parts_.files.Claim(file);
    const auto lock = parts_.files.Lock(folder.path());
    const auto stamp = parts_.files.Stamp(file);
    const auto draft = parts_.files.Read(file);
    if (!claim || !lock || !stamp || !draft) continue;
    if (draft->empty() || parts_.files.Holds(folder.library(), *draft) == true) {
      parts_.files.Remove(file);
    } else if (const auto kept = folder.KeepFile(entry.name, *draft, VersionTag::Unsaved, stamp->time())) {
      Tell({LibraryEvent::Kind::UnsavedFound, path, kept});
    }
  }
}

bool LibraryKeeper::ThrownAway(ByteSource&& bytes) {
  if (openPath_.empty()) return false;
  VersionFolder folder = HistoryOf(openPath_);
  const std::string all = bytes.ReadRest();
  const Patience::Limit waits = parts_.files.LimitWaits(kWaitOfASave);
  {
    const bool made = folder.Make();
    const auto lock = made ? parts_.files.Lock(folder.path()) : nullptr;
    if (!lock || !folder.Keep(all, VersionTag::Unsaved)) {
      Tell({LibraryEvent::Kind::HistoryFailed, openPath_});
      return false;
    }
    folder.Prune(parts_.limits());
  }
  DropDraft();
  return true;
}

bool LibraryKeeper::WriteDraft(std::string bytes) {
  if (!draft_.claim) return true;
  mayHaveDraft_ = true;
  return drafting_.Begin(
      [this, folder = HistoryOf(openPath_), path = draft_.path, text = std::move(bytes)]() mutable {
        try {
          const std::string unfinished = path + ".tmp";
          if (!folder.Make() || !parts_.files.Write(unfinished, text) || !parts_.files.Move(unfinished, path))
            draftFailed_ = true;
        } catch (...) {
          draftFailed_ = true;  // out of memory; the previous draft stays
        }
      });
}

void LibraryKeeper::DropDraft() {
  drafting_.Finish();
  if (std::exchange(mayHaveDraft_, false)) parts_.files.Remove(draft_.path);
}

bool LibraryKeeper::LookForOutsideChange() {
  if (looking_.Works()) return true;
  looking_.Finish();
  TakeChange();
  const auto known = Known(openPath_);
  if (openPath_.empty() || !known) return false;
  const auto stamp = parts_.files.Stamp(parts_.pathForFiles(openPath_));
  if (!stamp || !stamp->exists || *stamp == known->stamp) return false;
  if (std::exchange(seen_, *stamp) == *stamp) ReadChange(*known, *stamp);
  return true;
}

void LibraryKeeper::ReadChange(const KnownContent& before, const FileStamp& stamp) {
  looking_.Begin([this, folder = HistoryOf(openPath_), path = openPath_, before, stamp]() mutable {
    // A save must not wait for this.
    const Patience::Limit waits = parts_.files.LimitWaits(Patience::Duration::zero());
    const bool made = folder.Make();
    const auto lock = made ? parts_.files.Lock(folder.path()) : nullptr;
    const auto bytes = made && !lock ? std::nullopt : parts_.files.Read(folder.library());
    if (!bytes) return;
    const std::uint64_t hash = ContentHash(*bytes);
    if (lock && hash != before.hash) folder.Keep(*bytes, VersionTag::Outside, stamp.time());
    change_ = {path, before, {stamp, hash}};
  });
}

void LibraryKeeper::TakeChange() {
  const auto change = std::exchange(change_, std::nullopt);
  // In between the library may have been saved, or another one opened.
  if (!change || change->path != openPath_ || Known(openPath_) != change->before) return;
  if (change->now.hash != change->before.hash) {
    Tell({LibraryEvent::Kind::ChangedOutside, openPath_});
    mayBePruned_ = true;
  }
  Learn(openPath_, change->now.stamp, change->now.hash);
}

}  // namespace snip
