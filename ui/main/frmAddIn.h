#pragma once

#include <functional>
#include <optional>

#include "library/LibraryStore.h"
#include "platform/Handle.h"
#include "platform/MessageFunction.h"
#include "platform/Twips.h"
#include "platform/Window.h"
#include "ui/main/LibraryChooser.h"
#include "ui/main/LibraryOperations.h"
#include "ui/main/Pane.h"
#include "ui/main/SnippetControls.h"
#include "ui/main/SnippetEditing.h"

namespace snip {

/// The main window. Decodes messages and hands them to the logic in `LibraryOperations` and `SnippetEditing`;
/// lays its parts out.
class frmAddIn : public Window {
 public:
  // Control ids; automation finds the controls by them.
  static constexpr int kFilesId = 1001;
  static constexpr int kListId = 1002;
  static constexpr int kNameId = 1003;
  static constexpr int kDescriptionId = 1004;
  static constexpr int kCodeId = 1005;
  static constexpr int kFileNameId = 1006;

  /// `unloaded` is called once the window is gone.
  frmAddIn(LibraryStore& store, ShowMessageFunction showMessage, std::function<void()> unloaded);
  ~frmAddIn() override;

  /// Shows the window modeless and without an owner; makes it, and opens the first library, if need be.
  /// False when the system refuses to make it.
  bool Show();

  /// Looks at a message before it is dispatched, for keys that belong to the window as a whole; true when it
  /// is used up.
  bool PreTranslate(MSG& message);

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  bool Form_Load();
  void Form_Resize();
  void RightPane_Resize();
  bool Form_QueryUnload();
  void Form_Unload();
  void OnCommand(int id, int notification);
  void OnMenuCommand(int id);
  void CopyCode();
  std::optional<int> CommandOfKey(WPARAM key) const;
  void FieldLeft();
  void RememberFocus();
  HWND FocusTarget() const;
  UniqueMenu MakeMenu() const;

  Library library_;
  ShowMessageFunction showMessage_;
  std::function<void()> unloaded_;
  TwipsPerPixel twips_;

  UniqueFont font_;
  Pane leftPane_;
  Pane rightPane_;
  LibraryChooser chooser_;
  SnippetControls controls_;
  SnippetEditing editing_;
  LibraryOperations operations_;

  UniqueAccelerators accelerators_;
  HWND lastFocus_ = nullptr;  ///< The control that had the focus when the window last had it.
  bool unloading_ = false;
  int leftPaneWidth_;      ///< Twips.
  int descriptionHeight_;  ///< Twips.
};

}  // namespace snip
