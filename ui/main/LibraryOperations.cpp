#include "ui/main/LibraryOperations.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <thread>
#include <utility>
#include <variant>

#include "library/BnsRules.h"

namespace snip {
namespace {

/// On a drive or, chosen from the network, on a server.
bool IsFullPath(const std::string& entry) {
  return entry.find(":\\") != std::string::npos || entry.starts_with("\\\\");
}

/// Closes the file before any message is shown, because no program can save it while it is open.
BnsResult ReadLibrary(const LibraryStore& store, const std::string& path) {
  const std::unique_ptr<ByteSource> bytes = store.Open(path);
  if (bytes == nullptr) return NotALibrary::Unreadable;
  return ReadBns(*bytes);
}

}  // namespace

std::string LibraryNameFromEntry(const std::string& entry) {
  if (!IsFullPath(entry)) return entry;
  std::string_view name = entry;
  name.remove_prefix(name.find_last_of("\\/") + 1);  // a full path holds one
  // The name must not become empty, which would mean no library.
  if (HasLibraryExtension(name) && name.size() > kLibraryExtension.size())
    name.remove_suffix(kLibraryExtension.size());
  return std::string(name);
}

/// Reads a library in a thread of its own.
struct LibraryOperations::LibraryAhead {
  LibraryAhead(const LibraryStore& store, std::string file) : path(std::move(file)) {
    thread_ = std::thread([this, &store] {
      try {
        result_ = ReadLibrary(store, path);
      } catch (const std::exception&) {
        return;  // opening the library reads it again and reports the failure
      }
    });
  }
  ~LibraryAhead() {
    if (thread_.joinable()) thread_.join();
  }
  LibraryAhead(const LibraryAhead&) = delete;
  LibraryAhead& operator=(const LibraryAhead&) = delete;

  /// Waits for the thread; nothing if it failed.
  std::optional<BnsResult> Take() {
    thread_.join();
    return std::move(result_);
  }

  const std::string path;

 private:
  std::optional<BnsResult> result_;
  std::thread thread_;
};

LibraryOperations::LibraryOperations(Library& library, SnippetEditing& editing, SnippetView& snippetView,
                                     LibraryView& view, LibraryStore& store, ShowMessageFunction showMessage,
                                     SnippetEditing::TextEquality sameName)
    : library_(library),
      editing_(editing),
      snippetView_(snippetView),
      view_(view),
      store_(store),
      showMessage_(std::move(showMessage)),
      sameName_(std::move(sameName)) {}

LibraryOperations::~LibraryOperations() = default;

std::vector<std::string> LibraryOperations::Names() const {
  std::vector<std::string> names = store_.Names();
  std::erase(names, kBrowseEntry);  // would look like the entry that opens the dialog
  return names;
}

void LibraryOperations::ReadAhead() {
  ahead_.reset();
  const std::vector<std::string> names = Names();
  if (names.empty()) return;
  const std::string path = store_.PathOf(names.front());
  try {
    ahead_ = std::make_unique<LibraryAhead>(store_, path);
  } catch (const std::exception&) {
    ahead_.reset();  // no thread: the library is read when it is opened
  }
}

/// What was read ahead is used only once, because the file may change later.
BnsResult LibraryOperations::Read(const std::string& path) {
  const WaitCursorScope wait(snippetView_);
  const auto ahead = std::exchange(ahead_, nullptr);
  if (ahead && ahead->path == path) {
    if (auto result = ahead->Take()) return std::move(*result);
  }
  return ReadLibrary(store_, path);
}

void LibraryOperations::LoadFiles() {
  openEntry_ = -1;
  struct Forgetting {
    std::unique_ptr<LibraryAhead>& ahead;
    ~Forgetting() { ahead.reset(); }
  };
  const Forgetting whateverIsNotOpened{ahead_};
  const std::vector<std::string> names = Names();
  if (names.empty()) {
    // Cancelling the file dialog goes back to the first library; without one, the chooser has no entry for
    // it.
    showMessage_("There are no BNS files in the BnSnipstore directory.", MessageStyle::kInformation,
                 kMainWindowTitle);
    editing_.DisableEdit(true);
    return;
  }
  for (const std::string& name : names) InsertFile(view_.FileCount(), name);
  InsertFile(view_.FileCount(), kBrowseEntry);
  view_.SelectFile(0);
  cboFiles_Click();
}

bool LibraryOperations::cboFiles_Click() {
  const auto stay = [this] {
    view_.SelectFile(openEntry_);
    return false;
  };
  if (!editing_.txtCode_LostFocus()) return stay();
  view_.HideFileNameBox();                                // it renames the library that is closed now
  if (!editing_.SettleName()) editing_.txtName_Cancel();  // the library is closed all the same
  const Changes changes = SettleChanges();
  if (changes == Changes::Nowhere) return stay();
  if (changes == Changes::InFile) ListCurrentLibrary();
  Leave();
  if (view_.Gone()) return false;

  const int entry = view_.SelectedFile();
  if (entry < 0) return true;
  openEntry_ = entry;
  const std::string text = view_.FileText(entry);
  if (text == kBrowseEntry) {
    BrowseForLibrary();
  } else if (IsFullPath(text)) {
    OpenBNSFile(text);
  } else {
    OpenBNSFile(store_.PathOf(text));
  }
  return !view_.Gone();
}

void LibraryOperations::BrowseForLibrary() {
  const auto path = view_.ChooseLibraryFile();
  if (view_.Gone()) return;
  if (!path) {
    view_.SelectFile(0);
    cboFiles_Click();
    return;
  }
  OpenOutside(*path);
}

void LibraryOperations::InsertFile(int entry, const std::string& text) {
  view_.InsertFile(entry, text);
  if (openEntry_ >= entry) ++openEntry_;
}

bool LibraryOperations::OpenOutside(const std::string& path) {
  if (!editing_.txtCode_LostFocus()) return false;
  int entry = 0;
  while (entry < view_.FileCount() && view_.FileText(entry) != path) ++entry;
  if (entry == view_.FileCount()) {
    entry = 0;
    InsertFile(entry, path);
  }
  view_.SelectFile(entry);
  return cboFiles_Click();
}

std::vector<NamedLibrary> LibraryOperations::OtherLibraries() const {
  std::vector<NamedLibrary> libraries;
  const std::string open = OpenPath();
  const auto add = [&](const std::string& entry) {
    const NamedLibrary library{LibraryNameFromEntry(entry), FileOf(entry)};
    const bool known = std::ranges::any_of(
        libraries, [&](const NamedLibrary& one) { return sameName_(one.path, library.path); });
    if (entry != kBrowseEntry && !known && !(editing_.ListsSnippets() && sameName_(library.path, open)))
      libraries.push_back(library);
  };
  for (int entry = 0; entry < view_.FileCount(); ++entry) add(view_.FileText(entry));
  for (const std::string& name : Names()) add(name);
  return libraries;
}

bool LibraryOperations::Choose(const std::string& path) {
  if (editing_.ListsSnippets() && path == OpenPath()) return true;
  int entry = 0;
  while (entry < view_.FileCount() && FileOf(view_.FileText(entry)) != path) ++entry;
  if (entry == view_.FileCount()) return OpenOutside(path);
  view_.SelectFile(entry);
  return cboFiles_Click();
}

LibraryOperations::Changes LibraryOperations::SettleChanges() {
  // A failed save has set `Saved`; ask about the changes again if they are in memory only.
  if (saveFailed_ && !KeepUnsaved()) library_.Saved = false;
  if (library_.LibraryName.empty() || library_.Saved) return Changes::MayGo;
  const auto answer = showMessage_("Save changes to '" + library_.LibraryName + "'?",
                                   MessageStyle::kYesNoQuestion, kMainWindowTitle);
  if (answer != MessageResult::Yes || view_.Gone()) return Changes::MayGo;
  if (!SaveCurFile()) return KeepUnsaved() ? Changes::MayGo : Changes::Nowhere;
  library_.Saved = true;
  return Changes::InFile;
}

bool LibraryOperations::OfferToSave() {
  if (!editing_.SettleName() || !editing_.txtCode_LostFocus()) return false;
  const Changes changes = SettleChanges();
  if (changes == Changes::InFile) ShowWhereSaved();  // the window may stay after all
  return changes != Changes::Nowhere;
}

void LibraryOperations::OpenBNSFile(const std::string& path) {
  BnsResult result = Read(path);
  auto* contents = std::get_if<BnsContents>(&result);
  if (contents == nullptr) {
    // The library in memory stays as it was, under its own name: what is shown is not part of it.
    editing_.ShowNothing("Not a valid BnSnipstore file.");
    editing_.DisableEdit(true);
    return;
  }
  if (contents->version == BnsVersion::Version1) {
    OpenBNSFileV1(std::move(*contents));
  } else {
    TakeContents(std::move(*contents));
  }
  if (!view_.Gone()) store_.OpenedOrSaved(path);
}

void LibraryOperations::OpenBNSFileV1(BnsContents contents) {
  // One message is enough: a file that must never be written will not be converted.
  if (contents.omitted > 0) {
    TakeContents(std::move(contents));
    return;
  }
  if (ReadsBackWhole(contents.snippets)) {
    showMessage_(
        "This file was saved in a previous version of Brennic Snipstore. When it is saved it will be "
        "converted to Snipstore 2.0 format.",
        MessageStyle::kOk, "");
    if (view_.Gone()) return;
    TakeContents(std::move(contents));
    library_.Saved = false;  // not yet in the current format
    return;
  }
  TakeContents(std::move(contents));
  editing_.DisableEdit(true);
  showMessage_(
      "This file was saved in a previous version of Brennic Snipstore. It cannot be converted to Snipstore "
      "2.0 format, because it has lines that would end a text or the list of snippets there. The library can "
      "be looked at but not changed, so that nothing of the file is lost.",
      MessageStyle::kInformation, kMainWindowTitle);
}

void LibraryOperations::TakeContents(BnsContents contents) {
  // A library without snippets also gets its name, or a later save would overwrite the library that was open
  // before. Make the name first: if memory ran out in between, snippets would be saved as another library.
  std::string name = LibraryNameFromEntry(view_.FileText(view_.SelectedFile()));
  library_.Snippets = std::move(contents.snippets);
  library_.LibraryName = std::move(name);
  library_.Saved = true;
  saveFailed_ = false;
  ++library_.Changes;  // everything is different
  editing_.DisableEdit(contents.omitted > 0);
  editing_.ForgetUndo();
  editing_.ShowLibrary();
  if (contents.omitted > 0) ReportOmitted(contents.omitted);
}

void LibraryOperations::ReportOmitted(std::size_t omitted) {
  showMessage_("A library holds at most " + std::to_string(Library::kMaxSnippets) +
                   " snippets. This file has " + std::to_string(omitted) +
                   " more, which could not be read. The library can be looked at but not changed, so that "
                   "nothing of the file is lost.",
               MessageStyle::kInformation, kMainWindowTitle);
}

bool LibraryOperations::SaveCurFile() {
  const WaitCursorScope wait(snippetView_);
  // There is deliberately no message about a failure: the library stays whole in memory and can be saved
  // again.
  const std::string path = store_.PathOf(library_.LibraryName);
  const bool written = store_.Replace(path, BnsBytes(library_.Snippets));
  saveFailed_ = !written;
  if (written) store_.OpenedOrSaved(path);
  return written;
}

void LibraryOperations::LoadAgain(const std::string& path) {
  if (!editing_.SettleName() || !editing_.txtCode_LostFocus()) return;
  if (!KeepUnsaved() && HasUnsaved()) return;  // the failure of the history is reported
  OpenBNSFile(path);
}

void LibraryOperations::OpenInstead(std::vector<Snippet> snippets) {
  Leave();
  TakeContents({.snippets = std::move(snippets)});
  library_.Saved = false;
  store_.OpenedOrSaved(OpenPath());
}

void LibraryOperations::Leave() {
  if (library_.LibraryName.empty() || !HasUnsaved()) return;
  KeepUnsaved();
  saveFailed_ = false;
}

bool LibraryOperations::KeepUnsaved() {
  return store_.ThrownAway(BnsBytes(library_.Snippets));
}

std::string LibraryOperations::FileOf(const std::string& entry) const {
  return IsFullPath(entry) ? entry : store_.PathOf(entry);
}

/// The chooser's entry of the current name, which is added if there is none; -1 if the name is that of the
/// entry that opens the dialog.
int LibraryOperations::ListCurrentLibrary() {
  if (library_.LibraryName == kBrowseEntry) return -1;
  int place = view_.FileCount();
  for (int entry = 0; entry < view_.FileCount(); ++entry) {
    const std::string text = view_.FileText(entry);
    if (sameName_(text, library_.LibraryName)) return entry;
    if (text == kBrowseEntry) place = entry;
  }
  InsertFile(place, library_.LibraryName);
  return place;
}

/// Selects the file that was written if the library was opened from another one: choosing that entry again
/// would open the file without the changes.
void LibraryOperations::ShowWhereSaved() {
  const int saved = ListCurrentLibrary();
  if (saved < 0 || SavedElsewhere().empty()) return;
  view_.HideFileNameBox();
  view_.SelectFile(saved);
  openEntry_ = saved;
}

std::string LibraryOperations::SavedElsewhere() const {
  const int chosen = view_.SelectedFile();
  if (chosen < 0 || library_.LibraryName.empty() || editing_.editingDisabled()) return {};
  std::string path = store_.PathOf(library_.LibraryName);
  return sameName_(path, FileOf(view_.FileText(chosen))) ? std::string() : path;
}

void LibraryOperations::SaveLibrary() {
  if (editing_.editingDisabled() || !editing_.SettleName() || !editing_.StoreShownCode()) return;
  const bool written = SaveCurFile();
  library_.Saved = true;
  if (written) ShowWhereSaved();
}

}  // namespace snip
