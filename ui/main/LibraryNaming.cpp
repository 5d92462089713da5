#include "ui/main/LibraryNaming.h"

#include <utility>

#include "library/BnsFormat.h"
#include "platform/Text.h"

namespace snip {

LibraryNaming::LibraryNaming(SnippetEditing& editing, LibraryOperations& operations, LibraryView& view,
                             LibraryStore& store, ShowMessageFunction showMessage)
    : editing_(editing),
      operations_(operations),
      view_(view),
      store_(store),
      showMessage_(std::move(showMessage)) {}

void LibraryNaming::GetNewLib() {
  txtFileName_LostFocus();
  // The fields are about to be emptied: what is being edited belongs to the library that is left.
  if (!editing_.SettleName() || !editing_.txtCode_LostFocus()) return;
  std::string name;
  do {
    name = view_.AskForLibraryName(name);  // the user can correct a name that was refused
    if (name.empty() || view_.Gone()) return;
  } while (!Create(name) && !view_.Gone());
  if (view_.Gone()) return;
  editing_.ShowNothing("");
  view_.InsertFile(view_.FileCount(), name);
  view_.SelectFile(view_.FileCount() - 1);
  // The entry is taken for a name: a file whose name looks like a full path could not have been made.
  if (!operations_.cboFiles_Click() && !view_.Gone()) editing_.ShowLibrary();
}

/// Writes a new library; if it cannot have that name, tells the user why and returns false.
bool LibraryNaming::Create(const std::string& name) {
  const std::string path = store_.PathOf(name);
  const std::string newLibrary = NewLibraryBns();
  std::string refusal;
  if (name == kBrowseEntry || store_.Exists(path)) {
    refusal = "This file already exists. Please choose another name.";
  } else if (!store_.Create(path, BytesInMemory(newLibrary))) {
    refusal = "A file of this name cannot be made. Please choose another name.";
  }
  if (refusal.empty()) return true;
  showMessage_(refusal, MessageStyle::kInformation, kMainWindowTitle);
  return false;
}

std::string LibraryNaming::CurrentEntry() const {
  const int entry = view_.SelectedFile();
  return entry < 0 ? std::string() : view_.FileText(entry);
}

void LibraryNaming::RenameLibrary() {
  if (editing_.editingDisabled() || editing_.Shown() == nullptr || !editing_.SettleName()) return;
  view_.ShowFileNameBox(CurrentEntry());
}

void LibraryNaming::txtFileName_Change() {
  const std::string current = CurrentEntry();
  const std::optional<std::string> typed = view_.FileNameText();
  if (!typed || !Trim(*typed).empty() || Trim(current).empty()) return;
  view_.SetFileNameText(current);
  view_.SelectFileNameText();
}

void LibraryNaming::AcceptName() {
  const std::string oldName = CurrentEntry();
  const std::optional<std::string> newName = view_.FileNameText();
  if (newName && newName != oldName && newName != kBrowseEntry &&
      store_.Rename(store_.PathOf(oldName), store_.PathOf(*newName))) {
    // The library in memory keeps its name, so that a later save writes under the old one again.
    view_.ReplaceFile(view_.SelectedFile(), *newName);
  }
  view_.HideFileNameBox();
}

void LibraryNaming::txtFileName_LostFocus() {
  view_.HideFileNameBox();
}

}  // namespace snip
