#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "library/Library.h"
#include "platform/MessageFunction.h"
#include "ui/main/ListUndo.h"
#include "ui/main/MainWindowViews.h"

namespace snip {

/// Showing, editing, renaming, adding and deleting the snippets of the current library. Decides without a
/// window: the controls are behind `SnippetView`. Handlers keep the names of the events they answer.
class SnippetEditing {
 public:
  using TextEquality = std::function<bool(const std::string&, const std::string&)>;

  /// `sameName` compares two names without regard to letter case, as the system's ANSI code page has it.
  SnippetEditing(Library& library, SnippetView& view, ShowMessageFunction showMessage, TextEquality sameName);

  /// Fills the list with the library's names and shows the first snippet, or empty fields when there is none.
  void ShowLibrary();
  /// Empties the list and shows `codeText` in the code field, for a file that gave no snippets.
  void ShowNothing(const std::string& codeText);

  /// Forgets everything, for a window that is made again.
  void Reset();

  /// While disabled nothing of the library can be changed.
  void DisableEdit(bool disabled);
  bool editingDisabled() const { return editingDisabled_; }

  /// The snippet that the fields show and commands work on; -1 and null for none. The list may have another
  /// row selected for a moment: it selects when the mouse button is pressed, and notifies when it is
  /// released.
  int shownIndex() const { return shownIndex_; }
  Snippet* Shown() const;
  /// Whether the list shows the library's snippets: false if there are none, or if the open file is not a
  /// valid library.
  bool ListsSnippets() const { return listed_ && !library_.Snippets.empty(); }
  /// Whether the open file is the library in memory, which may have no snippets.
  bool ListsLibrary() const { return listed_; }

  void lstCode_Click(int row);
  void lstCode_DblClick();  ///< Starts renaming the shown snippet in place.

  /// Starts editing the shown snippet's code, or ends it.
  void EditSnippet();
  void txtCode_DblClick();
  void txtCode_KeyPress(char key);
  void txtCode_Change();  ///< Any change of the code field.
  /// Commits the edit in progress, if there is one. False if the field cannot be read: the user has been
  /// told, and the edit goes on.
  bool txtCode_LostFocus();
  /// Copies the shown code into its snippet without ending the edit. False as above.
  bool StoreShownCode();
  /// The same without a message.
  bool TakeShownCode();

  void txtDesc_Change();

  /// Commits the name being edited (Enter, or leaving the box), if there is one. False when it is refused:
  /// the user has been told why and is back in the box.
  bool SettleName();
  void txtName_Cancel();  ///< Escape.

  /// Appends a default snippet and starts renaming it.
  void NewSnippet() { AddSnippet(DefaultSnippet()); }
  /// Appends a snippet and starts renaming it.
  void AddSnippet(Snippet snippet);
  void DeleteSnippet(int index);
  void DeleteSelectedSnippet();

  /// Undo and redo changes of the list: new, delete, rename, move, attachment, put back. The changed snippet
  /// is selected.
  void Undo();
  void Redo();
  /// For another library, in which there is nothing to undo.
  void ForgetUndo() { undo_.Clear(); }
  /// Moves the shown snippet to a row; a row outside the list means its nearer end.
  void MoveShown(int row);
  void SetAttachment(const std::string& path);
  /// Replaces the snippet at `inPlaceOf` (from 0) or, without that, the one of the same name; appends the
  /// snippet if there is no such one.
  void PutBack(Snippet snippet, std::optional<std::size_t> inPlaceOf = std::nullopt);
  void PutAllBack(std::vector<Snippet> snippets);

 private:
  void Make(ListChange change);
  void MakeAndShow(ListChange change);
  void ShowChange(const ListChange& inverse);
  bool CanChangeList();
  void TellFull() const;
  void SetEditing(bool editing);
  void Show(int row);
  void SelectAndShow(int row);
  bool NameTaken(const std::string& name, int exceptRow) const;
  void Tell(const std::string& prompt) const;
  bool RefuseName(const std::string& reason);
  void EndRename();

  Library& library_;
  SnippetView& view_;
  ShowMessageFunction showMessage_;
  TextEquality sameName_;
  bool listed_ = false;
  int shownIndex_ = -1;
  bool editing_ = false;           ///< The shown snippet's code is being edited.
  std::optional<int> renamedRow_;  ///< The row that txtName covers.
  bool editingDisabled_ = false;
  ListUndo undo_;
};

}  // namespace snip
