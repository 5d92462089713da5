// What the buttons, menus and dropped files of the main window do.
#include <windows.h>
#include <commdlg.h>

#include <algorithm>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/FlagScope.h"
#include "platform/Shell.h"
#include "resources/resource.h"
#include "ui/dialogs/CommonDialog.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmSettings.h"
#include "ui/main/MainToolbars.h"
#include "ui/main/frmAddIn.h"

namespace snip {
namespace {

constexpr const char* kWebPage =
    "https://learn.microsoft.com/en-us/previous-versions/visualstudio/visual-basic-6/"
    "visual-basic-6.0-documentation";

/// Torn off, a menu repaints itself and tells assistive programs, which is for changes only.
void Enable(frmMenu& menu, int item, bool enabled) {
  if (menu.IEnabled(item) != enabled) menu.SetIEnabled(item, enabled);
}

}  // namespace

void frmAddIn::cmd_ButtonClicked(int index) {
  switch (index) {
    case MainButton::kNewLibrary:
      naming_.GetNewLib();
      break;
    case MainButton::kSaveLibrary:
      operations_.SaveLibrary();
      break;
    case MainButton::kRenameLibrary:
      naming_.RenameLibrary();
      break;
    case MainButton::kOutput:
      Output();
      break;
    case MainButton::kNewSnippet:
      editing_.NewSnippet();
      break;
    case MainButton::kEditSnippet:
      editing_.EditSnippet();
      break;
    case MainButton::kDeleteSnippet:
      editing_.DeleteSelectedSnippet();
      break;
    case MainButton::kSettings:
      frmSettings(*this, services_.settings, services_.caption).ShowMe(hWnd());
      tTip_.TakeListFont();
      break;
    case MainButton::kAbout:
      frmAbout(services_.showMessage, services_.caption).ShowMe(hWnd());
      break;
    case MainButton::kKeepOnTop:
      SetKeepOnTop(cmd_.state(MainButton::kKeepOnTop) == 1);
      break;
    case MainButton::kWebPage:
      snip::ShellOpen(kWebPage);
      break;
    default:
      break;
  }
}

void frmAddIn::Output() {
  const std::string mode = cmd_.Caption(MainButton::kOutput);
  if (mode == kCopyToClipboard) return CopyCode();
  // What was pressed while the environment took its time over the last delivery is not meant for another one.
  const bool queued = InSendMessage() == 0;
  if (queued && delivered_ && static_cast<LONG>(static_cast<DWORD>(GetMessageTime()) - *delivered_) < 0)
    return;
  if (mode == kPasteToCodeWindow) {
    output_.PasteCode();
  } else {
    if (!editing_.StoreShownCode()) return;  // an edit in progress belongs to what the user sees
    const int entry = chooser_.SelectedFile();
    output_.PasteToNewModule(entry < 0 ? std::string() : chooser_.FileText(entry));
  }
  delivered_ = GetTickCount();
}

void frmAddIn::CopyCode() {
  if (!editing_.ListsSnippets()) {
    Copy("");  // what is shown then is no code: nothing is copied, which empties the clipboard
  } else if (const auto code = controls_.Code()) {
    Copy(*code);
  }
}

bool frmAddIn::Copy(const std::string& text) {
  if (CopyToClipboard(hWnd(), text)) return true;
  services_.showMessage("The clipboard is in use by another program. Please try again.",
                        MessageStyle::kInformation, kMainWindowTitle);
  return false;
}

void frmAddIn::SetKeepOnTop(bool onTop) {
  SetWindowPos(hWnd(), onTop ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
}

void frmAddIn::SetSnippetTips(bool tips) {
  snippetTips_ = tips;
  if (!tips) tTip_.Hide();  // the timer does not look at it any more
}

void frmAddIn::PopUp(frmMenu& menu, POINT screen) {
  menu.Popup(twips_.ToTwipsX(static_cast<int>(screen.x)), twips_.ToTwipsY(static_cast<int>(screen.y)), hWnd(),
             allowMenuDrag_);
}

void frmAddIn::cmd_Dropdown() {
  const auto place = cmd_.GetMenuPos(MainButton::kOutput);
  if (!place) return;
  POINT screen{place->x, place->y};
  ClientToScreen(cmd_.hWnd(), &screen);
  cmd_.Freeze();  // so that the arrow stays pressed until the menu closes
  {
    // Pressed again while the menu was open: that the menu closes for that is no reason to let the arrow go.
    const FlagScope opening(openingOutputMenu_);
    menus_.Fill();
    PopUp(menus_.mnuModFuncs, screen);
  }
  if (menus_.mnuModFuncs.input().State() != MenuState::Docked) cmd_.Thaw();
}

void frmAddIn::mnuModFuncs_Clicked(int index) {
  const OutputMode& mode = OutputModeAt(index);
  cmd_.SetCaption(MainButton::kOutput, mode.caption);
  cmd_.SetPicture(MainButton::kOutput, BarPicture(mode.picture));
  cmd_.RedrawButton(MainButton::kOutput);
  // Also while the button itself is greyed, because it takes nothing from a library that must not be changed.
  Output();
}

void frmAddIn::cmdEdit_ButtonClicked(int index) {
  if (index == EditButton::kCommit) editing_.txtCode_LostFocus();
  if (index == EditButton::kSyntaxHighlighting) {
    controls_.txtCode().SetSyntaxColors(cmdEdit_.state(EditButton::kSyntaxHighlighting) != 0);
  }
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
    // As in any list, the row that the menu is about is the one under the mouse.
    if (HIWORD(entry) == 0 && LOWORD(entry) != editing_.shownIndex()) {
      controls_.SelectRow(LOWORD(entry));
      editing_.lstCode_Click(LOWORD(entry));
    }
  }
  menus_.Fill();
  UpdateSnippetsMenu();
  PopUp(menus_.mnuSnippets, screen);
}

void frmAddIn::UpdateSnippetsMenu() {
  for (const int item : {SnippetsItem::kRename, SnippetsItem::kEdit, SnippetsItem::kDelete}) {
    Enable(menus_.mnuSnippets, item, !editing_.editingDisabled());
  }
}

void frmAddIn::mnuSnippets_Clicked(int index) {
  switch (index) {
    case SnippetsItem::kRename:
      editing_.lstCode_DblClick();
      break;
    case SnippetsItem::kEdit:
      cmd_ButtonClicked(MainButton::kEditSnippet);
      break;
    case SnippetsItem::kDelete:
      cmd_ButtonClicked(MainButton::kDeleteSnippet);
      break;
    case SnippetsItem::kPaste:
      mnuModFuncs_Clicked(0);
      break;
    case SnippetsItem::kCopy:
      mnuModFuncs_Clicked(1);
      break;
    default:
      break;
  }
}

void frmAddIn::cmdAttach_Click() {
  menus_.Fill();
  UpdateAttachMenu();
  RECT place{};
  GetWindowRect(cmdAttach_, &place);
  PopUp(menus_.mnuAttach, {place.left, place.bottom});
}

void frmAddIn::UpdateAttachMenu() {
  Enable(menus_.mnuAttach, AttachItem::kView, attachments_.CanView());
  Enable(menus_.mnuAttach, AttachItem::kSet, !attachments_.Locked());
}

void frmAddIn::mnuAttach_Clicked(int index) {
  if (index == AttachItem::kView) attachments_.ViewAttachment();
  if (index == AttachItem::kSet) attachments_.SetAttachment();
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

void frmAddIn::BarTip::ShowTip(const std::string& text, int x, int y) {
  const std::string file = text == kSaveLibrary ? operations_.SavedElsewhere() : std::string();
  frmTip::ShowTip(file.empty() ? text : text + ": " + file, x, y);
}

void frmAddIn::ShowListTip() {
  // The box over the row that is renamed would be covered, and under a dialog the list takes no clicks.
  if (IsWindowVisible(controls_.txtName()) != 0 || IsWindowEnabled(hWnd()) == 0) {
    tTip_.Hide();
  } else {
    tTip_.tTip_Timer();
  }
}

void frmAddIn::txtCode_MouseDown(int button, POINT screen) {
  constexpr int right = 2;
  if (button == right) OpenEditMenu(screen);
}

void frmAddIn::OpenEditMenu(POINT screen) {
  menus_.Fill();
  UpdateEditMenu();
  PopUp(menus_.mnuEdit, screen);
}

void frmAddIn::UpdateEditMenu() {
  const BnRichEdit& code = controls_.txtCode();
  frmMenu& menu = menus_.mnuEdit;
  Enable(menu, EditItem::kEdit, !editing_.editingDisabled());
  Enable(menu, EditItem::kUndo, !code.locked() && code.CanUndo());
  Enable(menu, EditItem::kCut, !code.locked() && code.SelLength() > 0);
  Enable(menu, EditItem::kPaste, !code.locked() && ClipboardHasText());
}

void frmAddIn::mnuEdit_Clicked(int index) {
  BnRichEdit& code = controls_.txtCode();
  switch (index) {
    case EditItem::kEdit:
      cmd_ButtonClicked(MainButton::kEditSnippet);
      break;
    case EditItem::kUndo:
      code.Undo();
      break;
    case EditItem::kCut:
      // A torn-off menu shows what was possible a moment ago.
      if (code.locked() || code.SelLength() == 0) break;
      if (const auto text = code.SelText(); text && Copy(*text)) code.ReplaceSelection("");
      break;
    case EditItem::kCopy:
      if (const auto text = code.SelText()) Copy(*text);
      break;
    case EditItem::kPaste:
      if (code.locked()) break;
      if (const std::string text = ClipboardText(hWnd()); !text.empty()) code.ReplaceSelection(text);
      break;
    case EditItem::kSelectAll:
      code.SetSelection(0, code.TextLength());
      break;
    default:
      break;
  }
}

void frmAddIn::DropFiles(HDROP files) {
  POINT place{};
  DragQueryPoint(files, &place);
  ClientToScreen(hWnd(), &place);
  RECT panel{};
  GetWindowRect(picAttach_.hWnd(), &panel);
  // Only one library and one attachment can be shown; the first that fits is taken.
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
