#include "ui/main/frmAddIn.h"

#include <windowsx.h>

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

enum MenuId : int {
  kSaveLibrary = 1,
  kClose,
  kNewSnippet,
  kEditSnippet,
  kRenameSnippet,
  kDeleteSnippet,
  kCopy
};

/// Posted to the window itself when an edit field has lost the focus: only afterwards can be told where the
/// focus went, and only then may a message box be shown.
constexpr UINT kFieldLeft = WM_APP + 1;

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
                     }}),
      editing_(library_, controls_, showMessage_, &SameTextIgnoringCase),
      operations_(library_, editing_, controls_, chooser_, store, showMessage_),
      leftPaneWidth_(kDesignLeftPaneWidth),
      descriptionHeight_(kDesignDescriptionHeight) {}

frmAddIn::~frmAddIn() {
  Destroy();
}

bool frmAddIn::Show() {
  const bool isNew = hWnd() == nullptr;
  if (isNew && !Form_Load()) return false;
  ShowWindow(hWnd(), SW_SHOWNORMAL);
  SetForegroundWindow(hWnd());
  UpdateWindow(hWnd());
  if (isNew) operations_.LoadFiles();
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

void frmAddIn::Form_QueryUnload() {
  editing_.txtName_Accept();
  editing_.txtCode_LostFocus();
  operations_.OfferToSave();
  DestroyWindow(hWnd());
}

void frmAddIn::CopyCode() {
  CopyToClipboard(hWnd(), controls_.Code());
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
  if (focus != controls_.txtName()) editing_.txtName_Accept();
  if (!controls_.txtCode().HasFocus()) editing_.txtCode_LostFocus();
}

bool frmAddIn::HandleKey(const MSG& message) {
  const bool control = GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0;
  const HWND focus = GetFocus();
  switch (message.wParam) {
    case VK_RETURN:
    case VK_ESCAPE:
      if (focus != controls_.txtName()) return false;
      if (message.wParam == VK_RETURN) {
        editing_.txtName_Accept();
      } else {
        editing_.txtName_Cancel();
      }
      return true;
    case VK_F2:
      if (focus != controls_.lstCode()) return false;
      editing_.lstCode_DblClick();
      return true;
    case VK_DELETE:
      if (focus != controls_.lstCode()) return false;
      editing_.DeleteSelectedSnippet();
      return true;
    case 'C':
      if (!control || focus != controls_.lstCode()) return false;
      CopyCode();
      return true;
    case 'N':
      if (control) editing_.NewSnippet();
      return control;
    case 'S':
      if (control) operations_.SaveLibrary();
      return control;
    default:
      return false;
  }
}

bool frmAddIn::PreTranslate(MSG& message) {
  if (hWnd() == nullptr) return false;
  const bool ours = message.hwnd == hWnd() || IsChild(hWnd(), message.hwnd) != 0;
  if (!ours) return false;
  if (message.message == WM_SYSKEYDOWN && message.wParam == VK_F4) {
    // Everywhere else the system does this; Wine's combo box keeps the keys for itself.
    PostMessageA(hWnd(), WM_SYSCOMMAND, SC_CLOSE, 0);
    return true;
  }
  if (message.message == WM_KEYDOWN && HandleKey(message)) return true;
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
      chooser_.Create(hWnd(), kFilesId, font_.get());
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
      SetFocus(FocusTarget());
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
    case WM_CLOSE:
      Form_QueryUnload();
      return 0;
    case WM_DESTROY:
      unloaded_();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
