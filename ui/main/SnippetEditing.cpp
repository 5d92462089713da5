#include "ui/main/SnippetEditing.h"

#include <algorithm>
#include <utility>

#include "library/BnsRules.h"

namespace snip {
namespace {

constexpr const char* kNoSelection = "No snippet selected.";

/// The message about a field that cannot be read: its text must not be lost or taken for empty.
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
  undo_.Clear();
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
  // If the view throws, the code field may be unlocked: what is typed must still belong to the edit.
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
  shownIndex_ = -1;  // while the fields show two different snippets
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
  if (editing_ && (code >= ' ' || code == enter)) library_.Change();
}

void SnippetEditing::txtCode_Change() {
  if (editing_) ++library_.Changes;
}

bool SnippetEditing::txtCode_LostFocus() {
  if (editing_ && !StoreShownCode()) return false;
  SetEditing(false);
  return true;
}

bool SnippetEditing::StoreShownCode() {
  if (TakeShownCode()) return true;
  Tell(Unreadable("code"));
  return false;
}

bool SnippetEditing::TakeShownCode() {
  Snippet* const snippet = Shown();
  if (editingDisabled_ || snippet == nullptr) return true;
  std::optional<std::string> code = view_.Code();
  if (!code) return false;
  if (*code == snippet->Code) return true;
  snippet->Code = std::move(*code);
  // Typing has marked the library as changed already; pasting, cutting, deleting and undoing have not.
  library_.Change();
  return true;
}

void SnippetEditing::txtDesc_Change() {
  Snippet* const snippet = Shown();
  if (editingDisabled_ || snippet == nullptr) return;
  std::optional<std::string> description = view_.Description();
  if (!description) return Tell(Unreadable("description"));
  if (description->empty() || *description == snippet->Description) return;
  snippet->Description = std::move(*description);
  library_.Change();
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
  if (library_.Snippets[static_cast<std::size_t>(row)].Name != name) {
    view_.SetRowText(row, name);
    Make({.kind = ListChange::Kind::Rename, .row = row, .text = name});
  }
  library_.Change();
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
  if (library_.IsFull()) return TellFull();
  Make({.kind = ListChange::Kind::Insert, .row = library_.LastIndex() + 1, .snippet = std::move(snippet)});
  view_.InsertRow(library_.LastIndex(), library_.Snippets.back().Name);
  SelectAndShow(library_.LastIndex());
  lstCode_DblClick();
}

void SnippetEditing::TellFull() const {
  Tell("This library is full. It holds " + std::to_string(Library::kMaxSnippets) +
       " snippets; please add the new snippet to another library.");
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
  if (library_.Snippets.size() == 1) {
    Snippet placeholder = DefaultSnippet();
    placeholder.Attachment = library_.Snippets.front().Attachment;  // it stays
    view_.SetRowText(index, placeholder.Name);
    Make({.kind = ListChange::Kind::Replace, .row = index, .snippet = std::move(placeholder)});
    SelectAndShow(index);
    return;
  }
  const bool wasLast = index == library_.LastIndex();
  Make({.kind = ListChange::Kind::Remove, .row = index});
  view_.RemoveRow(index);
  // Deleting the last snippet of the list leaves no row selected and the fields as they are.
  if (!wasLast) SelectAndShow(0);
}

/// Changes the library and records how to undo it.
void SnippetEditing::Make(ListChange change) {
  undo_.Made(MakeChange(library_.Snippets, std::move(change)));
  library_.Change();
}

/// Shows in the list a change that was made, given its inverse, and selects the changed snippet.
void SnippetEditing::ShowChange(const ListChange& inverse) {
  using Kind = ListChange::Kind;
  int row = inverse.row;
  const auto name = [&](int of) -> const std::string& {
    return library_.Snippets[static_cast<std::size_t>(of)].Name;
  };
  shownIndex_ = -1;
  switch (inverse.kind) {
    case Kind::Insert:
      view_.RemoveRow(row);
      row = std::min(row, library_.LastIndex());
      break;
    case Kind::Remove:
      view_.InsertRow(row, name(row));
      break;
    case Kind::Move:
      view_.RemoveRow(inverse.to);
      view_.InsertRow(row, name(row));
      break;
    case Kind::All:
      row = -1;
      break;
    default:
      view_.SetRowText(row, name(row));
  }
  if (row < 0) return ShowLibrary();
  listed_ = true;
  SelectAndShow(row);
}

bool SnippetEditing::CanChangeList() {
  // What is being edited belongs to a row, which is about to change.
  return !editingDisabled_ && !library_.LibraryName.empty() && SettleName() && txtCode_LostFocus();
}

void SnippetEditing::Undo() {
  if (!CanChangeList()) return;
  auto change = undo_.NextUndo();
  if (!change) return;
  ListChange inverse = MakeChange(library_.Snippets, std::move(*change));
  library_.Change();
  ShowChange(inverse);
  undo_.Undone(std::move(inverse));
}

void SnippetEditing::Redo() {
  if (!CanChangeList()) return;
  auto change = undo_.NextRedo();
  if (!change) return;
  ListChange inverse = MakeChange(library_.Snippets, std::move(*change));
  library_.Change();
  ShowChange(inverse);
  undo_.Redone(std::move(inverse));
}

void SnippetEditing::MoveShown(int row) {
  if (!CanChangeList() || Shown() == nullptr) return;
  row = std::clamp(row, 0, library_.LastIndex());
  if (row != shownIndex_) MakeAndShow({.kind = ListChange::Kind::Move, .row = shownIndex_, .to = row});
}

void SnippetEditing::SetAttachment(const std::string& path) {
  if (Shown() != nullptr && !editingDisabled_)
    Make({.kind = ListChange::Kind::Attachment, .row = shownIndex_, .text = path});
}

void SnippetEditing::PutBack(Snippet snippet, std::optional<std::size_t> inPlaceOf) {
  if (!CanChangeList()) return;
  const std::vector<Snippet>& all = library_.Snippets;
  const auto same = [&](const Snippet& other) { return sameName_(other.Name, snippet.Name); };
  const std::size_t row =
      inPlaceOf.value_or(static_cast<std::size_t>(std::ranges::find_if(all, same) - all.begin()));
  if (row < all.size()) {
    return MakeAndShow(
        {.kind = ListChange::Kind::Replace, .row = static_cast<int>(row), .snippet = std::move(snippet)});
  }
  if (library_.IsFull()) return TellFull();
  MakeAndShow(
      {.kind = ListChange::Kind::Insert, .row = library_.LastIndex() + 1, .snippet = std::move(snippet)});
}

void SnippetEditing::PutAllBack(std::vector<Snippet> snippets) {
  if (CanChangeList()) MakeAndShow({.kind = ListChange::Kind::All, .all = std::move(snippets)});
}

void SnippetEditing::MakeAndShow(ListChange change) {
  ListChange inverse = MakeChange(library_.Snippets, std::move(change));
  library_.Change();
  ShowChange(inverse);
  undo_.Made(std::move(inverse));
}

void SnippetEditing::Tell(const std::string& prompt) const {
  showMessage_(prompt, MessageStyle::kInformation, kMainWindowTitle);
}

}  // namespace snip
