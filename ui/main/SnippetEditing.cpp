#include "ui/main/SnippetEditing.h"

#include <utility>

#include "library/BnsFormat.h"

namespace snip {

SnippetEditing::SnippetEditing(Library& library, SnippetView& view, ShowMessageFunction showMessage,
                               TextEquality sameName)
    : library_(library), view_(view), showMessage_(std::move(showMessage)), sameName_(std::move(sameName)) {}

void SnippetEditing::ShowLibrary() {
  shownIndex_ = -1;
  if (library_.Snippets.empty()) {
    ShowNothing("");
    return;
  }
  EndRename();
  view_.FillRows(library_.Snippets);
  SelectAndShow(0);
}

void SnippetEditing::ShowNothing(const std::string& codeText) {
  shownIndex_ = -1;
  EndRename();
  view_.FillRows({});
  view_.SetCodeLocked(true);
  view_.SetEditMode(false);
  view_.SetCode(codeText);
  view_.SetDescription("");
}

void SnippetEditing::Forget() {
  shownIndex_ = -1;
  renamedRow_.reset();
  editingDisabled_ = false;
}

void SnippetEditing::DisableEdit(bool disabled) {
  editingDisabled_ = disabled;
  view_.SetEditingDisabled(disabled);
}

void SnippetEditing::lstCode_Click() {
  if (view_.RowCount() == 0 || view_.SelectedRow() < 0) return;
  if (!txtCode_LostFocus()) return view_.SelectRow(shownIndex_);
  ShowSelected();
}

void SnippetEditing::ShowSelected() {
  const int row = view_.SelectedRow();
  if (!library_.HasIndex(row)) return;
  const Snippet& snippet = library_.Snippets[static_cast<std::size_t>(row)];
  shownIndex_ = -1;  // as long as the fields are of two snippets
  {
    const WaitCursorScope wait(view_);
    view_.SetCodeLocked(true);
    view_.SetCode(snippet.Code);
  }
  view_.SetDescription(snippet.Description);
  shownIndex_ = row;
}

void SnippetEditing::SelectAndShow(int row) {
  view_.SelectRow(row);
  lstCode_Click();
}

void SnippetEditing::EditSnippet() {
  if (editingDisabled_) return;
  const int row = view_.SelectedRow();
  if (!library_.HasIndex(row)) {
    ReportNoSelection();
    return;
  }
  if (EditInProgress()) {
    txtCode_LostFocus();
    return;
  }
  if (row != shownIndex_) ShowSelected();  // the list tells of a row only when the mouse button is let go
  view_.SetCodeLocked(false);
  view_.SetEditMode(true);
  view_.FocusCode();
}

void SnippetEditing::txtCode_DblClick() {
  if (!EditInProgress()) EditSnippet();
}

void SnippetEditing::txtCode_KeyPress(char key) {
  constexpr unsigned char enter = 13;
  const auto code = static_cast<unsigned char>(key);
  if (EditInProgress() && (code >= ' ' || code == enter)) library_.Saved = false;
}

bool SnippetEditing::txtCode_LostFocus() {
  if (EditInProgress() && shownIndex_ != -1) {
    if (!StoreShownCode()) return false;
    view_.SetCodeLocked(true);
  }
  view_.SetEditMode(false);
  return true;
}

bool SnippetEditing::StoreShownCode() {
  if (editingDisabled_ || !library_.HasIndex(shownIndex_)) return true;
  std::optional<std::string> shown = view_.Code();
  if (!shown) return false;
  std::string& stored = library_.Snippets[static_cast<std::size_t>(shownIndex_)].Code;
  if (*shown == stored) return true;
  stored = std::move(*shown);
  // Typing has said so already; pasting, cutting, deleting and undoing have not.
  library_.Saved = false;
  return true;
}

void SnippetEditing::txtDesc_Change() {
  if (editingDisabled_ || !library_.HasIndex(shownIndex_)) return;
  std::string& stored = library_.Snippets[static_cast<std::size_t>(shownIndex_)].Description;
  std::optional<std::string> shown = view_.Description();
  if (!shown || shown->empty() || *shown == stored) return;
  stored = std::move(*shown);
  library_.Saved = false;
}

void SnippetEditing::lstCode_DblClick() {
  const int row = view_.SelectedRow();
  if (editingDisabled_ || !library_.HasIndex(row) || !SettleName()) return;
  renamedRow_ = row;
  view_.ShowNameBox(row, library_.Snippets[static_cast<std::size_t>(row)].Name);
}

void SnippetEditing::txtName_Cancel() {
  EndRename();
}

/// Tells the user why a name cannot be taken and puts him back into the box.
bool SnippetEditing::RefuseName(const std::string& reason) {
  showMessage_(reason, MessageStyle::kInformation, kMainWindowTitle);
  view_.FocusNameBox();
  return false;
}

bool SnippetEditing::SettleName() {
  if (!renamedRow_) return true;
  const int row = *renamedRow_;
  if (editingDisabled_ || !library_.HasIndex(row)) {
    EndRename();
    return true;
  }
  const std::optional<std::string> typed = view_.NameBoxText();
  if (!typed) return false;
  const std::string& name = *typed;
  if (NameTaken(name, row)) {
    return RefuseName(
        "A snippet in this library already has this name. Please use a different name for this snippet.");
  }
  if (EndsSnippetList(name)) {
    return RefuseName(
        "A line of three dots ends the list of snippets in a library file. Please use a different name for "
        "this snippet.");
  }
  std::string& stored = library_.Snippets[static_cast<std::size_t>(row)].Name;
  if (stored != name) view_.SetRowText(row, name);
  stored = name;
  library_.Saved = false;
  EndRename();
  return true;
}

bool SnippetEditing::NameTaken(const std::string& name, int exceptRow) const {
  for (int row = 0; row <= library_.LastIndex(); ++row) {
    if (row != exceptRow && sameName_(library_.Snippets[static_cast<std::size_t>(row)].Name, name))
      return true;
  }
  return false;
}

void SnippetEditing::EndRename() {
  renamedRow_.reset();  // first, so that hiding the box, which makes it lose the focus, commits nothing
  view_.HideNameBox();
}

void SnippetEditing::NewSnippet() {
  if (editingDisabled_ || !SettleName()) return;
  if (!txtCode_LostFocus()) return;
  if (library_.IsFull()) {
    showMessage_("This library is full. It holds " + std::to_string(Library::kMaxSnippets) +
                     " snippets; please add the new snippet to another library.",
                 MessageStyle::kInformation, kMainWindowTitle);
    return;
  }
  library_.Snippets.push_back(DefaultSnippet());
  library_.Saved = false;
  view_.AddRow(library_.Snippets.back().Name);
  SelectAndShow(library_.LastIndex());
  lstCode_DblClick();
}

void SnippetEditing::DeleteSelectedSnippet() {
  const int row = view_.SelectedRow();
  DeleteSnippet(row);
  if (row >= 0 && !editingDisabled_) view_.FocusList();
}

void SnippetEditing::DeleteSnippet(int index) {
  if (editingDisabled_) return;
  if (!library_.HasIndex(index)) {
    ReportNoSelection();
    return;
  }
  if (!txtCode_LostFocus()) return;  // the edit belongs to an index, which is about to change
  shownIndex_ = -1;
  EndRename();
  library_.Saved = false;

  const auto place = library_.Snippets.begin() + index;
  if (library_.Snippets.size() == 1) {
    place->Name = DefaultSnippet().Name;
    place->Description = DefaultSnippet().Description;
    place->Code = DefaultSnippet().Code;  // the attachment stays
    view_.SetRowText(index, place->Name);
    SelectAndShow(index);
    return;
  }
  const bool wasLast = index == library_.LastIndex();
  library_.Snippets.erase(place);
  view_.RemoveRow(index);
  // Behind the last snippet there is nothing to move up to: no row is selected and the fields stay.
  if (!wasLast) SelectAndShow(0);
}

void SnippetEditing::ReportNoSelection() {
  showMessage_("No snippet selected.", MessageStyle::kInformation, kMainWindowTitle);
}

}  // namespace snip
