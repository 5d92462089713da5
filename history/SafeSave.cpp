#include "history/SafeSave.h"

#include <string>

#include "history/ContentHash.h"
#include "library/BnsScanner.h"

namespace snip {
namespace {

constexpr std::string_view kUnfinished = "pending.tmp";

struct IgnoredLines : BnsEvents {
  void OnLine(BnsSection, std::string_view, std::string_view) override {}
  void OnPlainLines(BnsSection, std::string_view) override {}
};

}  // namespace

bool IsWholeLibrary(std::string_view bytes) {
  BytesInMemory source(bytes);
  BnsScanner scanner(source);
  IgnoredLines ignored;
  return scanner.version() && scanner.Scan(ignored) == BnsEnding::ListEnd && bytes.ends_with('\n');
}

namespace {

/// Keeps an interrupted save as a version instead of completing it.
std::optional<Version> KeepPending(Files& files, VersionFolder& folder, std::string_view pending) {
  const auto stamp = files.Stamp(folder.File(kPendingSave));
  const VersionTag tag = IsWholeLibrary(pending) ? VersionTag::Unsaved : VersionTag::Cut;
  return folder.KeepFile(kPendingSave, pending, tag, stamp.value_or(FileStamp()).time());
}

/// Keeps a pending save as a version if it has other bytes. True if none such is left.
bool ClearPending(Files& files, VersionFolder& folder, std::string_view bytes) {
  if (!HasPendingSave(files, folder) || files.Holds(folder.File(kPendingSave), bytes) == true) return true;
  const auto pending = files.Read(folder.File(kPendingSave));
  return pending && KeepPending(files, folder, *pending);
}

}  // namespace

bool KeepOldFile(Files& files, VersionFolder& folder, const std::optional<KnownContent>* known) {
  const auto stamp = files.Stamp(folder.library());
  if (stamp && !stamp->exists) return true;
  const bool unchanged = known != nullptr && *known && stamp == (*known)->stamp;
  if (unchanged && folder.NewestIs((*known)->hash)) return true;
  const auto old = files.Read(folder.library());
  if (!stamp || !old) return false;
  const bool foreign = known != nullptr && *known && (*known)->hash != ContentHash(*old);
  const VersionTag own = IsWholeLibrary(*old) ? VersionTag::Saved : VersionTag::Cut;
  return folder.Keep(*old, foreign ? VersionTag::Outside : own, stamp->time()).has_value();
}

SaveOutcome SaveSafely(Files& files, VersionFolder& folder, std::string_view bytes, const WriteLibrary& write,
                       std::optional<KnownContent>* known, Patience::Duration wait) {
  SaveOutcome outcome;
  HashInBackground hash(bytes);  // hashes while waiting for the disk
  std::unique_ptr<Held> lock;
  bool made = false, oldKept = false, pending = false;
  {
    const Patience::Limit waits = files.LimitWaits(wait);
    made = folder.Make();
    if (made) lock = files.Lock(folder.path());
    // There is a library of this name again, so the pending save no longer belongs to the renamed one.
    if (lock) files.Remove(folder.File(kRenamedTo));
    oldKept = made && KeepOldFile(files, folder, known);
    // Without the lock the pending save belongs to another program.
    pending = lock && ClearPending(files, folder, bytes) && files.Write(folder.File(kUnfinished), bytes) &&
              files.Move(folder.File(kUnfinished), folder.File(kPendingSave));
  }
  const Patience::Limit waits = files.LimitWaits(wait);
  const bool done = write(bytes);
  const auto stamp = files.Stamp(folder.library());
  outcome.written = files.Holds(folder.library(), bytes).value_or(done);
  if (!outcome.written) {
    const auto left = known != nullptr && stamp ? files.Read(folder.library()) : std::nullopt;
    if (left) *known = KnownContent{*stamp, ContentHash(*left)};
    return outcome;
  }
  if (known != nullptr) *known = KnownContent{stamp.value_or(FileStamp{}), hash.Wait()};
  std::optional<Version> kept;
  if (pending) {
    kept = folder.KeepFile(kPendingSave, bytes, VersionTag::Saved, std::nullopt, hash.Wait());
  } else if (made) {
    kept = folder.Keep(bytes, VersionTag::Saved);
  }
  outcome.kept = kept && oldKept;
  return outcome;
}

bool HasPendingSave(Files& files, const VersionFolder& folder) {
  const auto stamp = files.Stamp(folder.File(kPendingSave));
  return !stamp || stamp->exists;
}

Recovery RecoverSave(Files& files, VersionFolder& folder, const WriteLibrary& write) {
  if (!HasPendingSave(files, folder)) return {};
  // Another program may be saving this file at the moment.
  const auto lock = files.Lock(folder.path());
  const auto pendingStamp = files.Stamp(folder.File(kPendingSave));
  if (!lock || !pendingStamp || !pendingStamp->exists) return {};
  const auto pending = files.Read(folder.File(kPendingSave));
  const auto stamp = files.Stamp(folder.library());
  const auto library = stamp && !stamp->exists ? std::string() : files.Read(folder.library());
  if (!pending || !stamp || !library) return {};
  if (*library == *pending) {
    folder.KeepFile(kPendingSave, *pending, VersionTag::Saved, pendingStamp->time());
    return {};
  }
  const bool cutOff = pending->starts_with(*library) && IsWholeLibrary(*pending);
  if (!cutOff) {
    const auto kept = KeepPending(files, folder, *pending);
    return kept && IsWholeLibrary(*pending) ? Recovery{Recovery::Kind::Unsaved, kept} : Recovery();
  }
  if (!library->empty()) folder.Keep(*library, VersionTag::Cut, stamp->time());
  write(*pending);
  if (files.Holds(folder.library(), *pending) != true) return {};
  return {Recovery::Kind::Completed,
          folder.KeepFile(kPendingSave, *pending, VersionTag::Saved, pendingStamp->time())};
}

}  // namespace snip
