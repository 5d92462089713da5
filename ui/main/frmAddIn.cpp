#include "ui/main/frmAddIn.h"

#include <windowsx.h>

#include <iterator>
#include <utility>

#include "platform/Clipboard.h"
#include "platform/Fonts.h"
#include "platform/ScreenTwips.h"
#include "platform/Win32Text.h"
#include "resources/resource.h"
#include "ui/main/MainWindowLayout.h"

namespace snip {
namespace {

// The design-time sizes, in twips.
constexpr Size kDesignSize{10800, 7200};
constexpr int kDesignLeftPaneWidth = 3000;
constexpr int kDesignDescriptionHeight = 800;
constexpr int kBarMargin = 60;

/// Above the numbers that the dialog manager sends for Enter and Escape (IDOK, IDCANCEL).
enum Command : int {
  kSaveLibrary = 101,
  kClose,
  kNewSnippet,
  kEditSnippet,
  kRenameSnippet,
  kDeleteSnippet,
  kCopy,
  kAcceptName,
  kCancelName,
};

/// Posted to the window itself when an edit field has lost the focus: only afterwards can be told where the
/// focus went, and only then may a message box be shown.
constexpr UINT kFieldLeft = WM_APP + 1;
/// Sent by `Show` to a new window: what it does is done as all else, in answer to a message.
constexpr UINT kLoadFiles = WM_APP + 2;

UniqueAccelerators MakeAccelerators() {
  ACCEL keys[] = {{FVIRTKEY | FCONTROL, 'S', kSaveLibrary}, {FVIRTKEY | FCONTROL, 'N', kNewSnippet}};
  return UniqueAccelerators(CreateAcceleratorTableA(keys, static_cast<int>(std::size(keys))));
}

}  // namespace

frmAddIn::frmAddIn(LibraryStore& store, ShowMessageFunction showMessage, std::function<void()> unloaded)
    : showMessage_(std::move(showMessage)),
      unloaded_(std::move(unloaded)),
      twips_(ScreenTwips()),
      controls_({.gotFocus = [] {},
                 .lostFocus = [this] { PostMessageA(hWnd(), kFieldLeft, 0, 0); },
                 .keyPress = [this](char key) { editing_.txtCode_KeyPress(key); },
                 .dblClick = [this] { editing_.txtCode_DblClick(); }},
                {.setEditingDisabled =
                     [this](bool disabled) {
                       const UINT state = MF_BYCOMMAND | (disabled ? MF_GRAYED : MF_ENABLED);
                       for (const int id : {kSaveLibrary, kNewSnippet, kEditSnippet, kRenameSnippet,
                                            kDeleteSnippet, kCopy}) {
                         EnableMenuItem(GetMenu(hWnd()), static_cast<UINT>(id), state);
                       }
                     },
                 .setEditMode =
                     [this](bool editing) {
                       CheckMenuItem(GetMenu(hWnd()), kEditSnippet,
                                     static_cast<UINT>(editing ? MF_CHECKED : MF_UNCHECKED));
                       SetTabStop(chooser_.cboFiles(), !editing);
                     }}),
      editing_(library_, controls_, showMessage_, &SameTextIgnoringCase),
      operations_(library_, editing_, controls_, chooser_, store, showMessage_),
      accelerators_(MakeAccelerators()),
      leftPaneWidth_(kDesignLeftPaneWidth),
      descriptionHeight_(kDesignDescriptionHeight) {}

frmAddIn::~frmAddIn() {
  Destroy();
}

bool frmAddIn::Show() {
  if (hWnd() == nullptr) {
    if (!Form_Load()) return false;
    SendMessageA(hWnd(), kLoadFiles, 0, 0);
  }
  ShowWindow(hWnd(), SW_SHOWNORMAL);
  SetForegroundWindow(hWnd());
  UpdateWindow(hWnd());
  return true;
}

bool frmAddIn::Form_Load() {
  font_ = MessageFont();
  const Rect place = twips_.ToPixels({0, 0, kDesignSize.width, kDesignSize.height});
  return Create({.className = "frmAddIn",
                 .title = kMainWindowTitle,
                 .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                 .exStyle = WS_EX_CONTROLPARENT,
                 .place = {CW_USEDEFAULT, CW_USEDEFAULT, place.width, place.height},
                 .iconId = IDI_SNIPSTORE});
}

UniqueMenu frmAddIn::MakeMenu() const {
  const auto add = [](HMENU menu, int id, const char* text) {
    AppendMenuA(menu, MF_STRING, static_cast<UINT_PTR>(id), text);
  };
  UniqueMenu library(CreatePopupMenu());
  add(library.get(), kSaveLibrary, "&Save Library\tCtrl+S");
  AppendMenuA(library.get(), MF_SEPARATOR, 0, nullptr);
  add(library.get(), kClose, "&Close\tAlt+F4");
  UniqueMenu snippet(CreatePopupMenu());
  add(snippet.get(), kNewSnippet, "&New Snippet\tCtrl+N");
  add(snippet.get(), kEditSnippet, "&Edit Snippet");
  add(snippet.get(), kRenameSnippet, "&Rename Snippet\tF2");
  add(snippet.get(), kDeleteSnippet, "&Delete Snippet\tDel");
  AppendMenuA(snippet.get(), MF_SEPARATOR, 0, nullptr);
  add(snippet.get(), kCopy, "&Copy to Clipboard");
  UniqueMenu menu(CreateMenu());
  // A menu owns the menus that hang from it.
  AppendMenuA(menu.get(), MF_POPUP, reinterpret_cast<UINT_PTR>(library.Release()), "&Library");
  AppendMenuA(menu.get(), MF_POPUP, reinterpret_cast<UINT_PTR>(snippet.Release()), "&Snippet");
  return menu;
}

void frmAddIn::Form_Resize() {
  if (IsIconic(hWnd()) != 0) return;
  const Size client = twips_.ToTwips(ClientSize(hWnd()));
  const int chooserHeight = twips_.ToTwipsY(PlaceInParent(chooser_.cboFiles()).height);
  const int barHeight = chooserHeight + 2 * kBarMargin;
  const auto places = LayOutMainWindow({.client = client,
                                        .barHeight = barHeight,
                                        .leftPaneWidth = leftPaneWidth_,
                                        .rightPaneTop = barHeight + 15,
                                        .splitterRight = leftPaneWidth_ + kSplitterSize});
  if (!places) return;
  Rect chooserPlace = twips_.ToPixels({kBarMargin, kBarMargin, client.width - 2 * kBarMargin, chooserHeight});
  MoveTo(chooser_.cboFiles(), chooserPlace);
  MoveTo(leftPane_.hWnd(), twips_.ToPixels(places->leftPane));
  MoveTo(rightPane_.hWnd(), twips_.ToPixels(places->rightPane));
  const Size list = ClientSize(leftPane_.hWnd());
  MoveTo(controls_.lstCode(), {0, 0, list.width, list.height});
  RightPane_Resize();
}

void frmAddIn::RightPane_Resize() {
  const auto places = LayOutRightPane({.inner = twips_.ToTwips(ClientSize(rightPane_.hWnd())),
                                       .descriptionHeight = descriptionHeight_,
                                       .attachPanelWidth = 0,
                                       .editBarHeight = 0,
                                       .splitterBottom = descriptionHeight_ + kSplitterSize});
  if (!places) return;
  MoveTo(controls_.txtDesc(), twips_.ToPixels(places->description));
  MoveTo(controls_.txtCode().hWnd(), twips_.ToPixels(places->code));
}

/// Takes in what is being edited and offers to save; false when the window has to stay. While the question
/// is open, another program may ask the window to close once more: then it has to stay as well.
bool frmAddIn::Form_QueryUnload() {
  if (unloading_ || !editing_.SettleName()) return false;
  unloading_ = true;
  editing_.txtCode_LostFocus();
  operations_.OfferToSave();
  unloading_ = false;
  return true;
}

void frmAddIn::Form_Unload() {
  // The window may be made again: it then starts from its files.
  library_ = {};
  editing_.Forget();
  lastFocus_ = nullptr;
  unloaded_();
}

void frmAddIn::CopyCode() {
  if (editing_.editingDisabled()) return;
  if (!CopyToClipboard(hWnd(), controls_.Code())) {
    showMessage_("The clipboard is in use by another program. Please try again.", MessageStyle::kInformation,
                 kMainWindowTitle);
  }
}

void frmAddIn::OnMenuCommand(int id) {
  switch (id) {
    case kSaveLibrary:
      operations_.SaveLibrary();
      break;
    case kClose:
      PostMessageA(hWnd(), WM_CLOSE, 0, 0);
      break;
    case kNewSnippet:
      editing_.NewSnippet();
      break;
    case kEditSnippet:
      editing_.EditSnippet();
      break;
    case kRenameSnippet:
      editing_.lstCode_DblClick();
      break;
    case kDeleteSnippet:
      editing_.DeleteSelectedSnippet();
      break;
    case kCopy:
      CopyCode();
      break;
    case kAcceptName:
      editing_.SettleName();
      break;
    case kCancelName:
      editing_.txtName_Cancel();
      break;
    default:
      break;
  }
}

void frmAddIn::OnCommand(int id, int notification) {
  if (id == kFilesId && notification == CBN_SELCHANGE) operations_.cboFiles_Click();
  if (id == kListId && notification == LBN_SELCHANGE) editing_.lstCode_Click();
  if (id == kListId && notification == LBN_DBLCLK) editing_.lstCode_DblClick();
  if (id == kNameId && notification == EN_KILLFOCUS) PostMessageA(hWnd(), kFieldLeft, 0, 0);
  if (id == kDescriptionId && notification == EN_CHANGE && !controls_.settingDescription()) {
    editing_.txtDesc_Change();
  }
}

/// Commits what was edited in a field that has lost the focus to another field. When another program or a
/// message has it, the user comes back to the field as it is.
void frmAddIn::FieldLeft() {
  const HWND focus = GetFocus();
  if (focus == nullptr || IsChild(hWnd(), focus) == 0) return;
  if (focus != controls_.txtName()) editing_.SettleName();
  if (!controls_.txtCode().HasFocus()) editing_.txtCode_LostFocus();
}

/// The command that a key stands for in the control that has the focus, if any.
std::optional<int> frmAddIn::CommandOfKey(WPARAM key) const {
  const HWND focus = GetFocus();
  if (focus == controls_.txtName()) {
    if (key == VK_RETURN) return kAcceptName;
    if (key == VK_ESCAPE) return kCancelName;
  }
  if (focus == controls_.lstCode()) {
    if (key == VK_F2) return kRenameSnippet;
    if (key == VK_DELETE) return kDeleteSnippet;
    if (key == 'C' && GetKeyState(VK_CONTROL) < 0) return kCopy;
  }
  return std::nullopt;
}

bool frmAddIn::PreTranslate(MSG& message) {
  if (hWnd() == nullptr) return false;
  const bool ours = message.hwnd == hWnd() || IsChild(hWnd(), message.hwnd) != 0;
  if (!ours) return false;
  RememberFocus();
  if (message.message == WM_SYSKEYDOWN && message.wParam == VK_F4) {
    // Everywhere else the system does this; Wine's combo box keeps the keys for itself.
    PostMessageA(hWnd(), WM_SYSCOMMAND, SC_CLOSE, 0);
    return true;
  }
  if (TranslateAcceleratorA(hWnd(), accelerators_.get(), &message) != 0) return true;
  if (message.message == WM_KEYDOWN) {
    if (const auto command = CommandOfKey(message.wParam)) {
      SendMessageA(hWnd(), WM_COMMAND, static_cast<WPARAM>(*command), 0);
      return true;
    }
  }
  // The code field knows by itself when Tab moves on and when it is a character of the code.
  if (IsChild(controls_.txtCode().hWnd(), message.hwnd) != 0) return false;
  if (message.message == WM_KEYDOWN && message.wParam == VK_TAB) {
    // The dialog manager would select the whole code on entering the code field, for the next key to replace,
    // and a field of several lines hands Tab to its container, which is no dialog.
    SetFocus(GetNextDlgTabItem(hWnd(), message.hwnd, GetKeyState(VK_SHIFT) < 0 ? TRUE : FALSE));
    return true;
  }
  return IsDialogMessageA(hWnd(), &message) != 0;
}

void frmAddIn::RememberFocus() {
  const HWND focus = GetFocus();
  if (IsChild(hWnd(), focus) != 0) lastFocus_ = focus;
}

HWND frmAddIn::FocusTarget() const {
  // The code field may have made its control anew meanwhile.
  return IsChild(hWnd(), lastFocus_) != 0 && IsWindowVisible(lastFocus_) != 0 ? lastFocus_
                                                                              : controls_.lstCode();
}

LRESULT frmAddIn::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      SetMenu(hWnd(), MakeMenu().Release());  // goes with the window
      leftPane_.CreateIn(hWnd());
      rightPane_.CreateIn(hWnd());
      chooser_.Create(hWnd(), kFilesId, kFileNameId, font_.get());
      controls_.Create(
          leftPane_.hWnd(), rightPane_.hWnd(),
          {.lstCode = kListId, .txtName = kNameId, .txtDesc = kDescriptionId, .txtCode = kCodeId},
          font_.get());
      return 0;
    case WM_SIZE:
      Form_Resize();
      return 0;
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) RememberFocus();
      return Default(message, wParam, lParam);
    case WM_SETFOCUS:
      // A minimised window keeps the focus; the field that had it gets it back afterwards.
      if (IsIconic(hWnd()) == 0) SetFocus(FocusTarget());
      return 0;
    case WM_COMMAND:
      if (lParam == 0) {
        OnMenuCommand(GET_WM_COMMAND_ID(wParam, lParam));
      } else {
        OnCommand(GET_WM_COMMAND_ID(wParam, lParam), GET_WM_COMMAND_CMD(wParam, lParam));
      }
      return 0;
    case kFieldLeft:
      FieldLeft();
      return 0;
    case kLoadFiles:
      operations_.LoadFiles();
      return 0;
    case WM_CLOSE:
      if (Form_QueryUnload()) DestroyWindow(hWnd());
      return 0;
    case WM_QUERYENDSESSION:
      return Form_QueryUnload() ? TRUE : FALSE;
    case WM_ENDSESSION:
      if (wParam != FALSE) DestroyWindow(hWnd());
      return 0;
    case WM_DESTROY:
      Form_Unload();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
