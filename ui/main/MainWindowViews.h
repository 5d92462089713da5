#pragma once

#include <optional>
#include <span>
#include <string>

#include "library/Library.h"

namespace snip {

// Interfaces through which the logic of the main window uses its controls; tests put plain objects in their
// place. Setters raise no events: the caller triggers any follow-up. A field that cannot be read returns
// nothing, which must not be taken for an empty text. Rows and entries count from 0; -1 means none.

/// The caption of every message that the main window shows.
inline constexpr const char* kMainWindowTitle = "Brennic Snipstore 2.x";
/// The entry of the library chooser that opens the file dialog.
inline constexpr const char* kBrowseEntry = "(Browse...)";

/// The snippet list and the fields that show and edit the selected snippet.
class SnippetView {
 public:
  virtual ~SnippetView() = default;

  // lstCode
  virtual void FillRows(std::span<const Snippet> snippets) = 0;
  virtual void InsertRow(int row, const std::string& name) = 0;
  virtual void RemoveRow(int row) = 0;
  virtual void SetRowText(int row, const std::string& name) = 0;
  virtual void SelectRow(int row) = 0;
  virtual void FocusList() = 0;

  // txtDesc
  virtual std::optional<std::string> Description() const = 0;
  virtual void SetDescription(const std::string& text) = 0;

  // txtCode
  virtual std::optional<std::string> Code() const = 0;
  virtual void SetCode(const std::string& text) = 0;
  virtual void FocusCode() = 0;

  // txtName, the box over a row in which its name is edited
  virtual void ShowNameBox(int row, const std::string& name) = 0;
  virtual std::optional<std::string> NameBoxText() const = 0;
  virtual void FocusNameBox() = 0;
  virtual void HideNameBox() = 0;

  /// Greys the buttons that work on a library and locks the description, or enables both again.
  virtual void SetEditingDisabled(bool disabled) = 0;
  /// Unlocks the code while it is edited, and shows that: by the edit button's look, and the Tab order.
  virtual void SetEditMode(bool editing) = 0;

  /// Shows or removes the hourglass.
  virtual void SetWaitCursor(bool waiting) = 0;
};

/// The library chooser.
class LibraryView {
 public:
  virtual ~LibraryView() = default;

  /// Whether the window was destroyed while a dialog or a message box was open; it must not be used then.
  virtual bool Gone() const = 0;

  // cboFiles
  virtual void InsertFile(int entry, const std::string& text) = 0;  ///< The selected entry stays selected.
  virtual int FileCount() const = 0;
  virtual std::string FileText(int entry) const = 0;
  virtual int SelectedFile() const = 0;
  virtual void SelectFile(int entry) = 0;
  /// Changes the text of an entry; a selected entry stays selected.
  virtual void ReplaceFile(int entry, const std::string& text) = 0;

  // txtFileName, the box over the chooser in which the library is renamed
  virtual std::optional<std::string> FileNameText() const = 0;
  virtual void SetFileNameText(const std::string& text) = 0;
  virtual void SelectFileNameText() = 0;
  virtual void ShowFileNameBox(const std::string& text) = 0;  ///< With the focus and its whole text selected.
  virtual void HideFileNameBox() = 0;

  /// Lets the user choose a library file; its full path, or nothing when the user cancelled.
  virtual std::optional<std::string> ChooseLibraryFile() = 0;
  /// Asks for the name of a new library, with `name` to begin with; empty when the user cancelled.
  virtual std::string AskForLibraryName(const std::string& name) = 0;
};

/// Shows the hourglass as long as it lives.
class WaitCursorScope {
 public:
  explicit WaitCursorScope(SnippetView& view) : view_(view) { view_.SetWaitCursor(true); }
  ~WaitCursorScope() { view_.SetWaitCursor(false); }
  WaitCursorScope(const WaitCursorScope&) = delete;
  WaitCursorScope& operator=(const WaitCursorScope&) = delete;

 private:
  SnippetView& view_;
};

}  // namespace snip
