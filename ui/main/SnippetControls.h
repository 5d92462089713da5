#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "platform/ExactTextField.h"
#include "platform/Handle.h"
#include "platform/Twips.h"
#include "ui/commandbar/PropertyBag.h"
#include "ui/editor/BnRichEdit.h"
#include "ui/main/LibraryChooser.h"
#include "ui/main/MainToolbars.h"
#include "ui/main/MainWindowViews.h"

namespace snip {

/// The snippet list with its rename box, the description and the code field.
class SnippetControls : public SnippetView {
 public:
  struct Ids {
    int lstCode;
    int txtDesc;
    int txtCode;
  };

  /// The toolbars and the chooser show the state of the editing, too.
  SnippetControls(BnRichEdit::Events codeEvents, MainToolbars& toolbars, const LibraryChooser& chooser);

  /// `txtName` is a child of the window itself, so that it can become wider than the list, and is made before
  /// the panes, which it covers.
  void CreateNameBox(HWND window, int id, HFONT listFont);
  void Create(HWND leftPane, HWND rightPane, const Ids& ids, HFONT listFont);

  HWND lstCode() const { return lstCode_; }
  int SelectedRow() const;  ///< Which the list tells of later, while the mouse is held on it.
  HWND txtName() const { return txtName_; }
  HWND txtDesc() const { return txtDesc_; }
  BnRichEdit& txtCode() { return txtCode_; }
  const BnRichEdit& txtCode() const { return txtCode_; }

  /// The font that the description and the code share.
  const FontProperty& Font() const { return font_; }
  /// A size that no font has, and a name that is empty, are refused: the font stays as it was.
  void SetFont(const FontProperty& font);

  /// Widens the box over a row as far as its text needs and the window allows.
  void txtName_Change() const;
  /// Moves the box, while it is shown, with its row; false when the row is not in sight.
  bool KeepNameBoxOnRow() const;
  /// The same, with the row scrolled into sight if need be.
  void BringNameBoxBack() const;
  /// The caret goes back to the start.
  void txtDesc_LostFocus() const;

  /// Whether the description is being set by the program, so that its change is no edit.
  bool settingDescription() const { return settingDescription_; }

  void FillRows(std::span<const Snippet> snippets) override;
  void InsertRow(int row, const std::string& name) override;
  void RemoveRow(int row) override;
  void SetRowText(int row, const std::string& name) override;
  void SelectRow(int row) override;
  /// Selects the next row whose name begins so, and tells which that is, if any. The selected one also
  /// matches if more than one letter is given.
  std::optional<int> SelectNameFrom(const std::string& beginning);
  void FocusList() override;
  std::optional<std::string> Description() const override;
  void SetDescription(const std::string& text) override;
  std::optional<std::string> Code() const override;
  void SetCode(const std::string& text) override;
  void FocusCode() override;
  void ShowNameBox(int row, const std::string& name) override;
  std::optional<std::string> NameBoxText() const override;
  void FocusNameBox() override;
  void HideNameBox() override;
  void SetEditingDisabled(bool disabled) override;
  void SetEditMode(bool editing) override;
  void SetWaitCursor(bool waiting) override;

 private:
  void AddRow(const std::string& name) const;
  void LockDescription() const;
  Rect NameBoxPlace() const;
  void MakeDescription(HWND parent, int id, HFONT font);

  LRESULT List(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageA(lstCode_, message, wParam, lParam);
  }

  MainToolbars& toolbars_;
  const LibraryChooser& chooser_;
  BnRichEdit txtCode_;
  TwipsPerPixel twips_;
  // Looked up once: each snippet that is shown has the pointer wait.
  HCURSOR waitCursor_ = LoadCursorA(nullptr, IDC_WAIT);
  HCURSOR arrowCursor_ = LoadCursorA(nullptr, IDC_ARROW);
  FontProperty font_{.Name = "Courier New", .Size = 10};
  UniqueFont fontHandle_;
  HWND lstCode_ = nullptr;
  HWND txtName_ = nullptr;
  HWND txtDesc_ = nullptr;
  int nameBoxRow_ = -1;
  bool descriptionWraps_ = true;
  ExactTextField description_;
  ExactTextField name_;
  bool settingDescription_ = false;
  bool editingDisabled_ = false;
  std::optional<bool> editMode_;  ///< None before the controls are told the first time.
};

}  // namespace snip
