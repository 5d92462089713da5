#include "ui/main/SnippetEditing.h"

#include <utility>

#include "library/BnsRules.h"

namespace snip {
namespace {

constexpr const char* kNoSelection = "No snippet selected.";

/// What is in a field that does not tell it must neither be lost nor taken for empty.
std::string Unreadable(const std::string& text) {
  return "The " + text +
         " cannot be read from its field, perhaps because memory is short. Please close other programs and "
         "try again.";
}

}  // namespace

SnippetEditing::SnippetEditing(Library& library, SnippetView& view, ShowMessageFunction showMessage,
                               TextEquality sameName)
    : library_(library), view_(view), showMessage_(std::move(showMessage)), sameName_(std::move(sameName)) {}

void SnippetEditing::ShowLibrary() {
  if (library_.Snippets.empty()) {
    ShowNothing("");
    listed_ = true;
    return;
  }
  shownIndex_ = -1;
  EndRename();
  view_.FillRows(library_.Snippets);
  listed_ = true;
  SelectAndShow(0);
}

void SnippetEditing::ShowNothing(const std::string& codeText) {
  listed_ = false;
  shownIndex_ = -1;
  EndRename();
  view_.FillRows({});
  SetEditing(false);
  view_.SetCode(codeText);
  view_.SetDescription("");
}

void SnippetEditing::Reset() {
  listed_ = editing_ = false;
  shownIndex_ = -1;
  renamedRow_.reset();
  editingDisabled_ = false;
}

void SnippetEditing::DisableEdit(bool disabled) {
  editingDisabled_ = disabled;
  view_.SetEditingDisabled(disabled);
}

Snippet* SnippetEditing::Shown() const {
  return library_.HasIndex(shownIndex_) ? &library_.Snippets[static_cast<std::size_t>(shownIndex_)] : nullptr;
}

void SnippetEditing::SetEditing(bool editing) {
  // Should the view fail, what can be typed into an unlocked field still belongs to the edit.
  editing_ = editing_ || editing;
  view_.SetEditMode(editing);
  editing_ = editing;
}

void SnippetEditing::lstCode_Click(int row) {
  if (!listed_ || !library_.HasIndex(row)) return;
  if (!txtCode_LostFocus()) return view_.SelectRow(shownIndex_);
  Show(row);
}

void SnippetEditing::Show(int row) {
  const Snippet& snippet = library_.Snippets[static_cast<std::size_t>(row)];
  shownIndex_ = -1;  // as long as the fields are of two snippets
  {
    const WaitCursorScope wait(view_);
    view_.SetCode(snippet.Code);
  }
  view_.SetDescription(snippet.Description);
  shownIndex_ = row;
}

void SnippetEditing::SelectAndShow(int row) {
  view_.SelectRow(row);
  lstCode_Click(row);
}

void SnippetEditing::EditSnippet() {
  if (editingDisabled_) return;
  if (Shown() == nullptr) return Tell(kNoSelection);
  if (editing_) {
    txtCode_LostFocus();
    return;
  }
  view_.SelectRow(shownIndex_);
  SetEditing(true);
  view_.FocusCode();
}

void SnippetEditing::txtCode_DblClick() {
  if (!editing_) EditSnippet();
}

void SnippetEditing::txtCode_KeyPress(char key) {
  constexpr unsigned char enter = 13;
  const auto code = static_cast<unsigned char>(key);
  if (editing_ && (code >= ' ' || code == enter)) library_.Saved = false;
}

bool SnippetEditing::txtCode_LostFocus() {
  if (editing_ && !StoreShownCode()) return false;
  SetEditing(false);
  return true;
}

bool SnippetEditing::StoreShownCode() {
  Snippet* const snippet = Shown();
  if (editingDisabled_ || snippet == nullptr) return true;
  std::optional<std::string> code = view_.Code();
  if (!code) {
    Tell(Unreadable("code"));
    return false;
  }
  if (*code == snippet->Code) return true;
  snippet->Code = std::move(*code);
  // Typing has said so already; pasting, cutting, deleting and undoing have not.
  library_.Saved = false;
  return true;
}

void SnippetEditing::txtDesc_Change() {
  Snippet* const snippet = Shown();
  if (editingDisabled_ || snippet == nullptr) return;
  std::optional<std::string> description = view_.Description();
  if (!description) return Tell(Unreadable("description"));
  if (description->empty() || *description == snippet->Description) return;
  snippet->Description = std::move(*description);
  library_.Saved = false;
}

void SnippetEditing::lstCode_DblClick() {
  if (editingDisabled_ || Shown() == nullptr || !SettleName()) return;
  renamedRow_ = shownIndex_;
  view_.ShowNameBox(shownIndex_, Shown()->Name);
}

void SnippetEditing::txtName_Cancel() {
  EndRename();
}

/// Reports why the name is refused and returns the focus to the name box.
bool SnippetEditing::RefuseName(const std::string& reason) {
  Tell(reason);
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
  if (!typed) return RefuseName(Unreadable("name"));
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

void SnippetEditing::AddSnippet(Snippet snippet) {
  if (editingDisabled_ || !SettleName()) return;
  if (!txtCode_LostFocus()) return;
  if (library_.IsFull()) {
    return Tell("This library is full. It holds " + std::to_string(Library::kMaxSnippets) +
                " snippets; please add the new snippet to another library.");
  }
  library_.Snippets.push_back(std::move(snippet));
  library_.Saved = false;
  view_.AddRow(library_.Snippets.back().Name);
  SelectAndShow(library_.LastIndex());
  lstCode_DblClick();
}

void SnippetEditing::DeleteSelectedSnippet() {
  const bool deletes = Shown() != nullptr && !editingDisabled_;
  DeleteSnippet(shownIndex_);
  if (deletes) view_.FocusList();
}

void SnippetEditing::DeleteSnippet(int index) {
  if (editingDisabled_) return;
  if (!listed_ || !library_.HasIndex(index)) return Tell(kNoSelection);
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

void SnippetEditing::Tell(const std::string& prompt) const {
  showMessage_(prompt, MessageStyle::kInformation, kMainWindowTitle);
}

}  // namespace snip
