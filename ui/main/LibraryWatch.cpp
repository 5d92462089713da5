#include "ui/main/LibraryWatch.h"

#include <algorithm>
#include <exception>
#include <utility>
#include <variant>

#include "history/SystemFiles.h"
#include "library/BnsFormat.h"
#include "platform/Win32Text.h"
#include "ui/history/LocalTime.h"

namespace snip {
namespace {

/// How often to look for changes by other programs. Activating the window looks at once.
constexpr std::uint64_t kLookMs = 3000;

}  // namespace

LibraryWatch::LibraryWatch(const Parts& parts)
    : parts_(parts),
      notice_([this](NoticeChoice choice) { Chosen(choice); }),
      history_(*this, parts.caption),
      lastTick_(GetTickCount()) {}

void LibraryWatch::Attach(HWND window, HWND noticeLevel) {
  window_ = window;
  noticeLevel_ = noticeLevel;
  seenChanges_ = parts_.library.Changes;
}

void LibraryWatch::Unload() {
  notice_.Hide();
  history_.Destroy();
  folderChange_.Reset();
  watched_.clear();
  draftTimer_.Done();
  if (parts_.keeper != nullptr && !parts_.operations.HasUnsaved()) parts_.keeper->DropDraft();
}

void LibraryWatch::Tick() {
  if (parts_.keeper == nullptr) return;
  const DWORD tick = GetTickCount();
  now_ += tick - std::exchange(lastTick_, tick);
  if (std::exchange(seenChanges_, parts_.library.Changes) != parts_.library.Changes)
    draftTimer_.Changed(now_);
  if (parts_.keeper->TakeDraftFailure()) draftTimer_.Changed(now_);
  if (draftTimer_.Due(now_)) Draft();
  if (!std::exchange(lookedForDrafts_, true)) parts_.keeper->FindAbandonedDrafts();
  if (now_ >= nextLook_) {
    nextLook_ = now_ + kLookMs;
    parts_.keeper->Prune();
    WatchFolder();
  }
  if (parts_.keeper->hasEvents()) {
    notices_.Add(parts_.keeper->TakeEvents());
    mayTell_ = true;
  }
  if (!mayTell_) return;  // so as not to ask the controls each second
  if (notices_.Update(parts_.keeper->openPath(), parts_.operations.SavedElsewhere())) notice_.Hide();
  // A notice could not be answered while a dialog is open.
  if (notices_.told() && !notice_.shown() && IsWindowEnabled(window_) != 0 && IsWindowVisible(window_) != 0)
    ShowNotice();
}

// --- Drafts -----------------------------------------------------------------------------------------------

void LibraryWatch::Draft() {
  if (parts_.keeper->WritesDraft() || !parts_.editing.TakeShownCode()) return;
  if (!parts_.operations.HasUnsaved() || parts_.library.LibraryName.empty()) return draftTimer_.Done();
  try {
    if (parts_.keeper->WriteDraft(WriteBns(parts_.library.Snippets))) draftTimer_.Done();
  } catch (const std::exception&) {
    draftTimer_.Done();  // out of memory: try again later
    draftTimer_.Changed(now_);
  }
}

// --- Other programs ---------------------------------------------------------------------------------------

void LibraryWatch::OnActivate() {
  notice_.ComeToFront();
  looking_ = true;
  nextLook_ = 0;
}

void LibraryWatch::WatchFolder() {
  const std::string& path = parts_.keeper->openPath();
  if (path != watched_) {
    watched_ = path;
    const std::string folder = path.substr(0, path.find_last_of('\\') + 1);
    // File names, too, because many programs save by renaming a new file.
    folderChange_.Reset(FindFirstChangeNotificationA(
        folder.c_str(), FALSE,
        FILE_NOTIFY_CHANGE_SIZE | FILE_NOTIFY_CHANGE_LAST_WRITE | FILE_NOTIFY_CHANGE_FILE_NAME));
    looking_ = true;  // it may have changed since it was read
  }
  if (folderChange_ && WaitForSingleObject(folderChange_.get(), 0) == WAIT_OBJECT_0) {
    looking_ = true;
    FindNextChangeNotification(folderChange_.get());
  }
  if (looking_) looking_ = parts_.keeper->LookForOutsideChange();
}

// --- The notice -------------------------------------------------------------------------------------------

void LibraryWatch::ShowNotice() {
  const LibraryEvent& event = *notices_.told();
  const std::string time =
      event.version ? ShortTime(event.version->CameAbout(), SystemFiles().Now()) : std::string();
  notice_.Show(window_, noticeLevel_, NoticeOf(event.kind, LibraryNameFromEntry(event.path), time));
}

void LibraryWatch::Chosen(NoticeChoice choice) {
  // Ignore the answer if a dialog is open or another library was opened since: the notice comes back.
  if (IsWindowEnabled(window_) == 0 ||
      notices_.Update(parts_.keeper->openPath(), parts_.operations.SavedElsewhere()) || !notices_.told())
    return;
  const LibraryEvent event = *notices_.told();
  // Another library may be open: open the one that the notice is about first, so that the answer is not
  // applied to the wrong one.
  const bool elsewhere = event.path != parts_.operations.OpenPath();
  const bool opens = choice == NoticeChoice::LoadAgain ||
                     (event.kind == LibraryEvent::Kind::UnsavedFound && choice != NoticeChoice::Close);
  if (elsewhere && opens && !parts_.operations.Choose(event.path)) return;
  switch (choice) {
    case NoticeChoice::LoadAgain:
      if (!elsewhere) parts_.operations.LoadAgain(event.path);
      break;
    case NoticeChoice::TakeThem:
      if (!TakeUnsaved(event)) return Tell("This version cannot be read.");
      break;
    case NoticeChoice::SaveAgain:
      return parts_.operations.SaveLibrary();  // a save that succeeds ends the notice
    case NoticeChoice::History:
      ShowHistory();
      break;
    default:
      break;
  }
  if (notices_.told() == event) notices_.Answered();
}

bool LibraryWatch::TakeUnsaved(const LibraryEvent& event) {
  const auto bytes = event.version ? History().Read(*event.version) : std::nullopt;
  std::vector<Snippet> snippets = bytes ? SnippetsIn(*bytes) : std::vector<Snippet>();
  if (snippets.empty()) return false;
  PutAllBack(std::move(snippets));
  return true;
}

// --- The history window -----------------------------------------------------------------------------------

void LibraryWatch::ShowHistory() {
  if (parts_.keeper != nullptr && !parts_.operations.OpenPath().empty()) history_.Show(window_);
}

/// Also for a file that is no library any more, which is when its history is needed most.
VersionFolder LibraryWatch::History() const {
  return parts_.keeper->HistoryOf(parts_.operations.OpenPath());
}

std::string LibraryWatch::Name() const {
  return LibraryNameFromEntry(parts_.operations.OpenPath());
}

std::vector<Version> LibraryWatch::Versions() {
  return History().Versions();
}

HistoryReader::ReadVersion LibraryWatch::Reading() {
  return [history = History()](const Version& version) mutable { return history.Read(version); };
}

std::string LibraryWatch::Folder() const {
  std::string folder = AnsiFromUtf8(History().path());
  std::ranges::replace(folder, '/', '\\');
  return folder;
}

std::span<const Snippet> LibraryWatch::Now() const {
  return parts_.editing.ListsLibrary() ? std::span<const Snippet>(parts_.library.Snippets)
                                       : std::span<const Snippet>();
}

bool LibraryWatch::CanPutBack() const {
  return IsWindowEnabled(window_) != 0 && !parts_.editing.editingDisabled() &&
         !parts_.library.LibraryName.empty();
}

bool LibraryWatch::CanPutAllBack() const {
  return CanPutBack() || (IsWindowEnabled(window_) != 0 && !parts_.editing.ListsLibrary());
}

void LibraryWatch::PutBack(const Snippet& snippet, std::optional<std::size_t> inPlaceOf) {
  parts_.editing.PutBack(snippet, inPlaceOf);
}

void LibraryWatch::PutAllBack(std::vector<Snippet> snippets) {
  if (snippets.empty()) return;
  if (parts_.editing.ListsLibrary()) {
    parts_.editing.PutAllBack(std::move(snippets));
  } else {
    parts_.operations.OpenInstead(std::move(snippets));
  }
}

void LibraryWatch::Tell(const std::string& text) {
  parts_.showMessage(text, MessageStyle::kInformation, kMainWindowTitle);
}

}  // namespace snip
