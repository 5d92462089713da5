#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "platform/ExactTextField.h"
#include "platform/Handle.h"
#include "platform/Twips.h"
#include "ui/commandbar/PropertyBag.h"
#include "ui/editor/BnRichEdit.h"
#include "ui/main/DeferredRows.h"
#include "ui/main/LibraryChooser.h"
#include "ui/main/MainToolbars.h"
#include "ui/main/MainWindowViews.h"

namespace snip {

/// The snippet list with its rename box, the description and the code field.
class SnippetControls : public SnippetView {
 public:
  struct Ids {
    int lstCode;
    int txtName;
    int txtDesc;
    int txtCode;
  };

  /// `SetEditingDisabled` and `SetEditMode` also change the toolbars and the chooser's tab stop.
  SnippetControls(BnRichEdit::Events codeEvents, MainToolbars& toolbars, const LibraryChooser& chooser);

  /// Makes all but `txtName`, which is made when it is first shown.
  void Create(HWND window, const Ids& ids, HFONT listFont);

  HWND lstCode() const { return lstCode_; }
  int SelectedRow() const;  ///< -1 for none; the list notifies only when the mouse button is released.
  /// Null before it is first shown.
  HWND txtName() const { return txtName_; }
  HWND txtDesc() const { return txtDesc_; }
  BnRichEdit& txtCode() { return txtCode_; }
  const BnRichEdit& txtCode() const { return txtCode_; }

  /// The font that the description and the code share.
  const FontProperty& Font() const { return font_; }
  /// An empty name or an impossible size is ignored: the font keeps its own.
  void SetFont(const FontProperty& font);

  /// Widens the box over a row as far as its text needs and the window allows.
  void txtName_Change() const;
  /// Moves the box, if it is shown, to its row; false if the row is scrolled out of sight.
  bool KeepNameBoxOnRow() const;
  /// The same, but scrolls the row into sight if needed.
  void BringNameBoxBack() const;
  /// Moves the caret to the start and scrolls there.
  void txtDesc_LostFocus() const;

  /// Shows the description's scroll bar only if there are more lines than fit. To be called when its size or,
  /// by the user, its text has changed.
  void FitDescriptionBar() const;
  /// Whether the program is setting the description, so that EN_CHANGE is not an edit.
  bool settingDescription() const { return settingDescription_; }

  void FillRows(std::span<const Snippet> snippets) override;
  void InsertRow(int row, const std::string& name) override;
  void RemoveRow(int row) override;
  void SetRowText(int row, const std::string& name) override;
  void SelectRow(int row) override;
  /// Selects the next row whose name begins with `prefix` and returns it, if any. The selected row also
  /// matches if `prefix` has more than one letter.
  std::optional<int> SelectNextByPrefix(const std::string& prefix);
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
  void TakeFont(UniqueFont font);
  void LockDescription() const;
  Rect NameBoxPlace() const;
  void MakeDescription(HWND parent, int id, HFONT font);
  void MakeNameBox();

  LRESULT List(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageA(lstCode_, message, wParam, lParam);
  }

  MainToolbars& toolbars_;
  const LibraryChooser& chooser_;
  BnRichEdit txtCode_;
  TwipsPerPixel twips_;
  // Loaded once, because showing a snippet sets both.
  HCURSOR waitCursor_ = LoadCursorA(nullptr, IDC_WAIT);
  HCURSOR arrowCursor_ = LoadCursorA(nullptr, IDC_ARROW);
  FontProperty font_{.Name = "Courier New", .Size = 10};
  UniqueFont fontHandle_;
  int lineHeight_ = 1;  ///< Of `fontHandle_`, in pixels.
  HWND lstCode_ = nullptr;
  DeferredRows rows_;  ///< Of `lstCode`.
  HWND txtName_ = nullptr;
  int nameBoxId_ = 0;
  HWND txtDesc_ = nullptr;
  int nameBoxRow_ = -1;
  bool descriptionWraps_ = true;
  ExactTextField description_;
  ExactTextField name_;
  bool settingDescription_ = false;
  bool editingDisabled_ = false;
  std::optional<bool> editMode_;  ///< Nothing before the first `SetEditMode`.
};

}  // namespace snip
