#pragma once

#include <functional>
#include <optional>
#include <string>

#include "library/Library.h"
#include "platform/MessageFunction.h"
#include "ui/main/MainViews.h"

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

  /// Starts anew, for a window that is made again.
  void Forget();

  /// While disabled nothing of the library can be changed.
  void DisableEdit(bool disabled);
  bool editingDisabled() const { return editingDisabled_; }

  void lstCode_Click();
  void lstCode_DblClick();  ///< Starts renaming the selected snippet in place.

  /// Starts editing the selected snippet's code, or ends it.
  void EditSnippet();
  void txtCode_DblClick();
  void txtCode_KeyPress(char key);
  /// Commits the edit in progress, if there is one. False when the field does not tell its text: the edit
  /// goes on then.
  bool txtCode_LostFocus();
  /// Takes the code as it is shown into its snippet, the edit going on. False when the field does not tell
  /// it.
  bool StoreShownCode();

  void txtDesc_Change();

  /// Commits the name being edited (Enter, or leaving the box), if there is one. False when it is refused:
  /// another snippet has it, the user has been told and is back in the box.
  bool SettleName();
  void txtName_Cancel();  ///< Escape.

  /// Appends a default snippet and starts renaming it.
  void NewSnippet();
  void DeleteSnippet(int index);
  void DeleteSelectedSnippet();

 private:
  bool EditInProgress() const { return !view_.CodeLocked(); }
  void ShowSelected();
  void SelectAndShow(int row);
  bool NameTaken(const std::string& name, int exceptRow) const;
  void ReportNoSelection();
  bool RefuseName(const std::string& reason);
  void EndRename();

  Library& library_;
  SnippetView& view_;
  ShowMessageFunction showMessage_;
  TextEquality sameName_;
  /// The snippet whose texts the fields show, and the edit is of; -1 for none. The selected row may be
  /// another one for a moment: the list box selects when the mouse button goes down and tells when it comes
  /// up.
  int shownIndex_ = -1;
  std::optional<int> renamedRow_;  ///< The row that txtName stands over.
  bool editingDisabled_ = false;
};

}  // namespace snip
