#pragma once

#include <functional>
#include <optional>
#include <string>

#include "library/LibraryStore.h"
#include "platform/Handle.h"
#include "platform/MessageFunction.h"
#include "platform/Twips.h"
#include "platform/Window.h"
#include "settings/SettingsStore.h"
#include "ui/caption/CaptionHook.h"
#include "ui/dialogs/SettingsTarget.h"
#include "ui/main/Attachments.h"
#include "ui/main/CodeDelivery.h"
#include "ui/main/LibraryChooser.h"
#include "ui/main/LibraryNaming.h"
#include "ui/main/LibraryOperations.h"
#include "ui/main/LibraryWatch.h"
#include "ui/main/MainMenus.h"
#include "ui/main/MainToolbars.h"
#include "ui/main/MainWindowLayout.h"
#include "ui/main/SnippetControls.h"
#include "ui/main/SnippetEditing.h"
#include "ui/main/SnippetFinding.h"
#include "ui/main/Splitter.h"

namespace snip {

/// The main window. Makes its controls and lays them out (frmAddInLayout.cpp), decodes messages and keys
/// (frmAddIn.cpp) and buttons and menus (frmAddInCommands.cpp), and hands them to the logic in
/// `SnippetEditing`, `LibraryOperations`, `LibraryNaming`, `Attachments`, `CodeDelivery`, `SnippetFinding`
/// and `LibraryWatch`.
class frmAddIn : public Window, private AttachmentView, private SettingsTarget {
 public:
  // Control ids; automation finds the controls by them. The boxes for names are made when they are first
  // shown.
  static constexpr int kFilesId = 1001;
  static constexpr int kListId = 1002;
  static constexpr int kNameId = 1003;
  static constexpr int kDescriptionId = 1004;
  static constexpr int kCodeId = 1005;
  static constexpr int kFileNameId = 1006;
  static constexpr int kMainBarId = 1007;
  static constexpr int kEditBarId = 1008;
  static constexpr int kAttachId = 1009;

  struct Services {
    LibraryStore& store;
    LibraryKeeper* keeper = nullptr;  ///< The same object as `store`; null if that keeps no history.
    const SettingsStore& settings;
    const SoundEffects& sounds;
    CaptionPainter& caption;
    ShowMessageFunction showMessage;
    std::function<void()> unloaded;  ///< The window is gone.
    std::function<void()> hidden;    ///< The user closed the window, which an environment keeps loaded.
  };

  explicit frmAddIn(Services services);
  ~frmAddIn() override;

  /// Shows the window, modeless and without an owner; the first call makes it and opens the first library.
  /// Code goes to `host` from now on, null for none. False if the window cannot be made, or was closed while
  /// it loaded.
  bool Show(HostEnvironment* host = nullptr);
  /// Code goes to `host` from now on; null for no environment.
  void SetHost(HostEnvironment* host);
  /// Shows the window early if it is still opening its first library, so that a message box has a visible
  /// owner.
  void ShowForMessage();
  void Hide();
  /// Offers to save, and ends the window.
  void Unload();

  /// Handles a message for open menus, for the windows of the search and the history, and for shortcut keys,
  /// before it is dispatched; true if it must not be dispatched.
  bool PreTranslate(MSG& message);

 protected:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  bool Form_Load();
  void MakeControls();
  void LoadSettings();
  void Form_Resize();
  void cmd_Resize();
  void RightPane_Resize(bool evenIfTooLow = false);
  Rect InRightPane(const Rect& place) const;
  void LookAround();
  bool Form_QueryUnload();
  void Form_Unload();
  void CloseSettings();
  void CloseWindow();
  void ShowInFront();
  void ShowForQuestion();

  void picSplt_MouseUp(int left);
  void picHSplt_MouseUp(int top);

  void Do(int command);
  bool IsEnabled(int command) const;
  void cmd_Dropdown();
  void cmdAttach_Click();
  void OpenSnippetsMenu(POINT screen, bool byKey);
  void PopUp(frmMenu& menu, POINT screen);

  void mnuModFuncs_Clicked(int command);
  void SetKeepOnTop(bool onTop);
  void Tick();
  bool ShowListTip();
  void txtCode_MouseDown(int button, POINT screen);
  void DropFiles(HDROP files);

  void OnCommand(int id, int notification);
  void OnKey(int command);
  std::optional<int> CommandOfKey(WPARAM key) const;
  void FieldLeft();
  void TypeAhead(const MSG& message);
  /// Stores which control has the focus; true if it is another one than before.
  bool RememberFocus();
  HWND FocusTarget() const;
  LRESULT ColorOfField(HWND field, HDC dc, UINT message);

  // AttachmentView
  std::optional<std::string> ChooseAttachment() override;
  bool MinimizeOnView() const override { return switches_[Switch::MinimizeOnView]; }
  void Minimize() override { ShowWindow(hWnd(), SW_MINIMIZE); }
  void ShellOpen(const std::string& path) override;

  // SettingsTarget
  bool IsOn(Switch which) const override { return switches_[which]; }
  void SetOn(Switch which, bool on) override;
  FontProperty CodeFont() const override { return controls_.Font(); }
  void SetCodeFont(const FontProperty& font) override { controls_.SetFont(font); }

  Library library_;
  Services services_;
  TwipsPerPixel twips_;

  UniqueFont font_;
  CaptionHook captionHook_;
  MainToolbars bars_;
  Splitter picSplt_;
  Splitter picHSplt_;
  HWND cmdAttach_ = nullptr;
  LibraryChooser chooser_{services_.caption};
  SnippetControls controls_;
  ListTips tTip_;
  HoverTimer hover_;
  MainMenus menus_;

  SnippetEditing editing_;
  LibraryOperations operations_;
  LibraryNaming naming_;
  Attachments attachments_;
  CodeDelivery delivery_;
  SnippetFinding finding_;
  LibraryWatch watch_;

  UniqueAccelerators accelerators_;
  HostEnvironment* host_ = nullptr;
  std::string typedName_;  ///< The letters typed in the list without a pause.
  DWORD lastTyped_ = 0;
  HWND lastFocus_ = nullptr;        ///< The control that had the focus when the window last had it.
  bool descriptionEdited_ = false;  ///< The description has the focus.
  bool loading_ = false;            ///< `Show` is making the window or opening the first library.
  bool unloading_ = false;
  bool openingOutputMenu_ = false;
  Switches switches_;
  Rect rightPane_{};               ///< Pixels of the window.
  RightPanePlaces rightPlaces_{};  ///< In it, as it was laid out last; twips.
  int leftPaneWidth_;              ///< Twips.
  int descriptionHeight_;          ///< Twips.
};

}  // namespace snip
