// What the buttons, menus and dropped files of the main window do.
#include <windows.h>
#include <commdlg.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/FlagScope.h"
#include "platform/Rects.h"
#include "platform/Shell.h"
#include "ui/dialogs/CommonDialog.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmSettings.h"
#include "ui/main/frmAddIn.h"

namespace snip {
namespace {

constexpr const char* kWebAddress =
    "https://learn.microsoft.com/en-us/previous-versions/visualstudio/visual-basic-6/"
    "visual-basic-6.0-documentation";

/// How far a key moves a splitter, in twips.
constexpr int kSplitterStep = 150;

}  // namespace

void frmAddIn::Do(int command) {
  using namespace Command;
  BnRichEdit& code = controls_.txtCode();
  const int splitterStep = twips_.ToPixelsX(kSplitterStep);
  switch (command) {
    case kNewLibrary:
      return naming_.GetNewLib();
    case kSaveLibrary:
      return operations_.SaveLibrary();
    case kRenameLibrary:
      return naming_.RenameLibrary();
    case kOutput:
      return delivery_.Output();
    case kOutputMenu:
      if (!bars_.cmd.Grayed(MainButton::kOutput)) cmd_Dropdown();
      return;
    case kPasteCode:
    case kCopyToClipboard:
    case kNewModule:
      return mnuModFuncs_Clicked(command);
    case kCopyCode:
      return delivery_.CopyCode();
    case kPasteWithFields:
      return delivery_.PasteWithFields();
    case kTakeCode:
      return delivery_.TakeCode();
    case kNewSnippet:
      return editing_.NewSnippet();
    case kEditSnippet:
      return editing_.EditSnippet();
    case kRenameSnippet:
      return editing_.lstCode_DblClick();
    case kDeleteSnippet:
      return editing_.DeleteSelectedSnippet();
    case kCommit:
      editing_.txtCode_LostFocus();
      return;
    case kSyntaxHighlighting:
      return code.SetSyntaxColors(bars_.cmdEdit.state(EditButton::kSyntaxHighlighting) != 0);
    case kAcceptName:
      editing_.SettleName();
      return;
    case kCancelName:
      return editing_.txtName_Cancel();
    case kAcceptFileName:
      return naming_.AcceptName();
    case kCancelFileName:
      return naming_.txtFileName_LostFocus();
    case kAttachmentMenu:
      return cmdAttach_Click();
    case kViewAttachment:
      return attachments_.ViewAttachment();
    case kSetAttachment:
      return attachments_.SetAttachment();
    case kSettings:
      frmSettings(*this, services_.settings, services_.caption).ShowMe(hWnd());
      return tTip_.TakeListFont();
    case kAbout:
      frmAbout(services_.showMessage, services_.caption).ShowMe(hWnd());
      return;
    case kKeepOnTop:
      return SetKeepOnTop(bars_.cmd.state(MainButton::kKeepOnTop) == 1);
    case kWebPage:
      snip::ShellOpen(kWebAddress);
      return;
    case kNarrowList:
    case kWidenList:
      return picSplt_.Move(command == kWidenList ? splitterStep : -splitterStep);
    case kLowerDescription:
    case kHeightenDescription:
      return picHSplt_.Move(command == kHeightenDescription ? splitterStep : -splitterStep);
    case kUndoList:
      return editing_.Undo();
    case kRedoList:
      return editing_.Redo();
    case kMoveUp:
    case kMoveDown:
      return editing_.MoveShown(editing_.shownIndex() + (command == kMoveDown ? 1 : -1));
    case kMoveToTop:
    case kMoveToBottom:
      return editing_.MoveShown(command == kMoveToTop ? 0 : library_.LastIndex());
    case kHistory:
      return watch_.ShowHistory();
    case kNotice:
      return watch_.FocusNotice();
    case kUndo:
      return code.Undo();
    case kCut:
      // A torn-off menu shows what was possible a moment ago.
      if (!IsEnabled(kCut)) return;
      if (const auto text = code.SelText(); text && delivery_.Copy(*text)) code.ReplaceSelection("");
      return;
    case kCopy:
      if (const auto text = code.SelText()) delivery_.Copy(*text);
      return;
    case kPaste:
      if (code.locked()) return;
      if (const std::string text = ClipboardText(hWnd()); !text.empty()) code.ReplaceSelection(text);
      return;
    case kFind:
      tTip_.Hide();
      return finding_.Find();
    case kFindNext:
    case kFindPrevious:
      return finding_.FindNext(command == kFindNext);
    case kSelectAll:
      return code.SetSelection(0, code.TextLength());
    default:
      return;
  }
}

/// Whether a menu offers a command.
bool frmAddIn::IsEnabled(int command) const {
  using namespace Command;
  const BnRichEdit& code = controls_.txtCode();
  switch (command) {
    case kRenameSnippet:
    case kEditSnippet:
    case kDeleteSnippet:
      return !editing_.editingDisabled();
    case kViewAttachment:
      return attachments_.CanView();
    case kSetAttachment:
      return !attachments_.Locked();
    case kUndo:
      return !code.locked() && code.CanUndo();
    case kCut:
      return !code.locked() && code.SelLength() > 0;
    case kPaste:
      return !code.locked() && ClipboardHasText();
    default:
      return true;
  }
}

void frmAddIn::mnuModFuncs_Clicked(int command) {
  bars_.SetOutputMode(command);
  // Also while the button is greyed: output does not change a locked library.
  delivery_.Output();
}

void frmAddIn::SetKeepOnTop(bool onTop) {
  SetWindowPos(hWnd(), onTop ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
}

void frmAddIn::SetOn(Switch which, bool on) {
  switches_.Set(which, on);
  if (which == Switch::UseSounds) bars_.cmd.SetPlaysSounds(on);
  if (which == Switch::SnippetTips && !on) tTip_.Hide();  // `Tick` will not do it any more
}

void frmAddIn::PopUp(frmMenu& menu, POINT screen) {
  menus_.Prepare();
  menu.Popup(twips_.ToTwipsX(static_cast<int>(screen.x)), twips_.ToTwipsY(static_cast<int>(screen.y)), hWnd(),
             switches_[Switch::AllowMenuDrag]);
}

void frmAddIn::cmd_Dropdown() {
  const auto place = bars_.cmd.GetMenuPos(MainButton::kOutput);
  if (!place) return;
  POINT screen{place->x, place->y};
  ClientToScreen(bars_.cmd.hWnd(), &screen);
  bars_.cmd.Freeze();  // so that the arrow stays pressed until the menu closes
  {
    // If the menu is still open from an earlier press, it closes now, which must not release the arrow.
    const FlagScope opening(openingOutputMenu_);
    PopUp(menus_.mnuModFuncs, screen);
  }
  if (menus_.mnuModFuncs.input().State() != MenuState::Docked) bars_.cmd.Thaw();
}

void frmAddIn::OpenSnippetsMenu(POINT screen, bool byKey) {
  const HWND list = controls_.lstCode();
  SetFocus(list);
  if (byKey) {
    RECT row{};
    GetClientRect(list, &row);
    row.bottom = row.top;
    const int selected = controls_.SelectedRow();
    if (selected >= 0)
      SendMessageA(list, LB_GETITEMRECT, static_cast<WPARAM>(selected), reinterpret_cast<LPARAM>(&row));
    screen = {row.left, row.bottom};
    ClientToScreen(list, &screen);
  } else {
    POINT place = screen;
    ScreenToClient(list, &place);
    const LRESULT entry = SendMessageA(list, LB_ITEMFROMPOINT, 0, MAKELPARAM(place.x, place.y));
    // As in any list, a right click selects the row under the mouse.
    if (HIWORD(entry) == 0 && LOWORD(entry) != editing_.shownIndex()) {
      controls_.SelectRow(LOWORD(entry));
      editing_.lstCode_Click(LOWORD(entry));
    }
  }
  PopUp(menus_.mnuSnippets, screen);
}

void frmAddIn::cmdAttach_Click() {
  RECT place{};
  GetWindowRect(cmdAttach_, &place);
  PopUp(menus_.mnuAttach, {place.left, place.bottom});
}

void frmAddIn::ShellOpen(const std::string& path) {
  snip::ShellOpen(path);
}

std::optional<std::string> frmAddIn::ChooseAttachment() {
  CommonDialog dialog;
  dialog.hWnd = hWnd();
  dialog.DialogTitle = "Choose Attachment";
  dialog.Filter = "All Files|*.*";
  dialog.Flags = OFN_FILEMUSTEXIST | OFN_HIDEREADONLY;
  dialog.ShowOpen();
  return dialog.FileName.empty() ? std::nullopt : std::optional(dialog.FileName);
}

/// True while the pointer is over the list or its tip, so that it must be polled.
bool frmAddIn::ShowListTip() {
  // The tip would cover the name box; and while a dialog is open the list takes no clicks.
  if (IsWindowVisible(controls_.txtName()) == 0 && IsWindowEnabled(hWnd()) != 0) return tTip_.tTip_Timer();
  tTip_.Hide();
  return false;
}

void frmAddIn::txtCode_MouseDown(int button, POINT screen) {
  constexpr int right = 2;
  if (button == right) PopUp(menus_.mnuEdit, screen);
}

void frmAddIn::DropFiles(HDROP files) {
  POINT place{};
  DragQueryPoint(files, &place);
  // Only one library and one attachment can be shown; the first that fits is taken.
  const RECT panel = ToRECT(InRightPane(rightPlaces_.attachPanel));
  const bool attaches = PtInRect(&panel, place) != 0;
  const std::vector<std::string> paths = DroppedFiles(files);
  const auto path = std::find_if(paths.begin(), paths.end(), [attaches](const std::string& file) {
    return attaches || HasLibraryExtension(file);
  });
  if (path == paths.end()) return;
  SetForegroundWindow(hWnd());
  chooser_.CloseList();
  if (attaches) {
    attachments_.SetAttachment(*path);
  } else {
    operations_.OpenOutside(*path);
  }
}

}  // namespace snip
