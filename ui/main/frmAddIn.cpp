#include "ui/main/frmAddIn.h"

#include <windowsx.h>

#include <utility>

#include "platform/FlagScope.h"
#include "platform/Fonts.h"
#include "platform/Foreground.h"
#include "platform/ScreenTwips.h"
#include "platform/Win32Text.h"
#include "resources/resource.h"
#include "ui/editor/CodeColours.h"
#include "ui/main/MainWindowKeys.h"
#include "ui/main/SystemMenu.h"

namespace snip {
namespace {

// The design-time sizes, in twips.
constexpr Size kDesignSize{10800, 7200};
constexpr int kDesignLeftPaneWidth = 3000;
constexpr int kDesignDescriptionHeight = 800;

constexpr UINT_PTR kTipTimer = 1;
constexpr UINT_PTR kWatchTimer = 2;
constexpr UINT kWatchMs = 1000;

/// The command of Ctrl and a key in the snippet list: undo, redo, or move the shown snippet.
std::optional<int> ListCommandOfKey(WPARAM key, bool shift) {
  struct Key {
    WPARAM key;
    bool shift;
    int command;
  };
  constexpr Key keys[] = {{'Z', false, Command::kUndoList},     {'Y', false, Command::kRedoList},
                          {VK_UP, true, Command::kMoveUp},      {VK_DOWN, true, Command::kMoveDown},
                          {VK_HOME, true, Command::kMoveToTop}, {VK_END, true, Command::kMoveToBottom}};
  for (const Key& known : keys) {
    if (known.key == key && known.shift == shift) return known.command;
  }
  return std::nullopt;
}

/// Posted when an edit field loses the focus: the new focus is known, and a message box allowed, only after
/// the notification.
constexpr UINT kFieldLeft = WM_APP + 1;
/// Sent by `Show` to a new window, so that loading runs inside the window procedure, which stops exceptions.
constexpr UINT kLoadFiles = WM_APP + 2;

}  // namespace

frmAddIn::frmAddIn(Services services)
    : services_(std::move(services)),
      twips_(ScreenTwips()),
      bars_(services_.sounds, services_.showMessage, operations_,
            {.Clicked = [this](int command) { Do(command); },
             .Dropdown = [this] { cmd_Dropdown(); },
             .Resize = [this] { cmd_Resize(); }}),
      picSplt_(Splitter::Divides::Columns, [this](int left) { picSplt_MouseUp(left); }),
      picHSplt_(Splitter::Divides::Rows, [this](int top) { picHSplt_MouseUp(top); }),
      controls_({.lostFocus = [this] { PostMessageA(hWnd(), kFieldLeft, 0, 0); },
                 .keyPress = [this](char key) { editing_.txtCode_KeyPress(key); },
                 .change = [this] { editing_.txtCode_Change(); },
                 .dblClick = [this] { editing_.txtCode_DblClick(); },
                 .mouseDown = [this](int button, POINT screen) { txtCode_MouseDown(button, screen); },
                 .contextMenu = [this](POINT screen) { PopUp(menus_.mnuEdit, screen); }},
                bars_, chooser_),
      hover_(*this, kTipTimer),
      menus_(services_.sounds, {.preTranslate = [this](MSG& message) { return PreTranslate(message); },
                                .Clicked = [this](int command) { Do(command); },
                                .isEnabled = [this](int command) { return IsEnabled(command); },
                                .mnuModFuncs_HideMenu =
                                    [this] {
                                      if (!openingOutputMenu_) bars_.cmd.Thaw();
                                    }}),
      editing_(library_, controls_, services_.showMessage, &SameTextIgnoringCase),
      operations_(library_, editing_, controls_, chooser_, services_.store, services_.showMessage,
                  &SameTextIgnoringCase),
      naming_(editing_, operations_, chooser_, services_.store, services_.showMessage),
      attachments_(editing_, *this),
      delivery_(
          {*this, library_, editing_, controls_, chooser_, bars_, services_.caption, services_.showMessage}),
      finding_({*this, [this] { ShowInFront(); }, library_, editing_, operations_, controls_, delivery_,
                services_.store, services_.settings, services_.caption}),
      watch_({services_.keeper, library_, editing_, operations_, services_.caption, services_.showMessage}),
      accelerators_(MakeAccelerators()),
      leftPaneWidth_(kDesignLeftPaneWidth),
      descriptionHeight_(kDesignDescriptionHeight) {}

frmAddIn::~frmAddIn() {
  Destroy();
}

// --- Life -------------------------------------------------------------------------------------------------

bool frmAddIn::Show(HostEnvironment* host) {
  SetHost(host);
  if (hWnd() == nullptr) {
    const FlagScope loading(loading_);
    if (!Form_Load()) return false;
    SendMessageA(hWnd(), kLoadFiles, 0, 0);
    if (hWnd() == nullptr) return false;  // closed while a message box was open
  }
  ShowInFront();
  return true;
}

void frmAddIn::SetHost(HostEnvironment* host) {
  host_ = host;
  delivery_.SetHost(host);
}

void frmAddIn::ShowForMessage() {
  if (loading_ && hWnd() != nullptr && IsWindowVisible(hWnd()) == 0) ShowInFront();
}

void frmAddIn::ShowInFront() {
  ShowWindow(hWnd(), IsIconic(hWnd()) != 0 ? SW_RESTORE : SW_SHOW);
  ShowOwnedPopups(hWnd(), TRUE);
  TakeForeground(GetLastActivePopup(hWnd()));
  UpdateWindow(hWnd());
}

void frmAddIn::Hide() {
  tTip_.Hide();
  ShowOwnedPopups(hWnd(), FALSE);  // open dialogs and torn-off menus go and come with the window
  ShowWindow(hWnd(), SW_HIDE);
}

void frmAddIn::Unload() {
  SetHost(nullptr);
  if (hWnd() == nullptr || unloading_) return;
  ShowForQuestion();
  // Another environment may have taken the window during the question.
  if (Form_QueryUnload() && host_ == nullptr) DestroyWindow(hWnd());
}

/// Ends edits, and shows the window if there is something to save or to tell, so that the message box has a
/// visible owner.
void frmAddIn::ShowForQuestion() {
  if (!editing_.SettleName()) editing_.txtName_Cancel();  // there is no time to ask for another name
  const bool taken = editing_.txtCode_LostFocus();
  if (!taken || (!library_.Saved && !library_.LibraryName.empty())) Show(host_);
}

/// Updates what depends on the pointer: another control may be under it although the mouse did not move.
void frmAddIn::LookAround() {
  hover_.Start();
  bars_.cmd.LookForPointer();
  bars_.cmdEdit.LookForPointer();
}

bool frmAddIn::Form_Load() {
  font_ = MessageFont();
  leftPaneWidth_ = kDesignLeftPaneWidth;
  descriptionHeight_ = kDesignDescriptionHeight;
  rightPlaces_ = {};
  const Rect place = twips_.ToPixels({0, 0, kDesignSize.width, kDesignSize.height});
  return Create({.className = "frmAddIn",
                 .title = kMainWindowTitle,
                 .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                 .exStyle = WS_EX_CONTROLPARENT | WS_EX_ACCEPTFILES,
                 .place = {CW_USEDEFAULT, CW_USEDEFAULT, place.width, place.height},
                 .iconId = IDI_SNIPSTORE});
}

/// Commits edits and offers to save; false if the window must stay open. It also stays if another program
/// asks it to close while the question is open.
bool frmAddIn::Form_QueryUnload() {
  if (unloading_ || !editing_.SettleName()) return false;
  const FlagScope unloading(unloading_);
  return operations_.OfferToSave();
}

void frmAddIn::CloseWindow() {
  if (host_ != nullptr) {
    // The environment keeps the window loaded, and the library in it, until it disconnects the add-in.
    Hide();
    services_.hidden();
    return;
  }
  if (Form_QueryUnload()) DestroyWindow(hWnd());
}

void frmAddIn::Form_Unload() {
  hover_.Stop();
  menus_.Unload();
  tTip_.Unload();
  bars_.Destroy();
  captionHook_.Remove();
  CloseSettings();
  operations_.Leave();
  watch_.Unload();
  // `Show` may make the window again, which must start without a library.
  library_ = {};
  editing_.Reset();
  lastFocus_ = nullptr;
  descriptionEdited_ = false;
  services_.unloaded();
}

// --- Keys and fields --------------------------------------------------------------------------------------

/// Runs the command of a key; a button's key presses the button, as a click does.
void frmAddIn::OnKey(int command) {
  using namespace Command;
  if (command >= kEditButton && command < kRenameSnippet) {
    bars_.cmdEdit.DoDefaultAction(command - kEditButton);
  } else if (command >= kMainButton && command < kEditButton) {
    bars_.cmd.DoDefaultAction(command - kMainButton);
  } else {
    Do(command);
  }
}

void frmAddIn::OnCommand(int id, int notification) {
  if (id == kFilesId && chooser_.Chooses(notification)) operations_.cboFiles_Click();
  if (id == kListId && notification == LBN_SELCHANGE) editing_.lstCode_Click(controls_.SelectedRow());
  if (id == kListId && notification == LBN_DBLCLK) editing_.lstCode_DblClick();
  if (id == kNameId && notification == EN_CHANGE) controls_.txtName_Change();
  if (id == kFileNameId && notification == EN_CHANGE) naming_.txtFileName_Change();
  if (id == kAttachId && notification == BN_CLICKED) cmdAttach_Click();
  if (id == kDescriptionId && notification == EN_CHANGE && !controls_.settingDescription()) {
    controls_.FitDescriptionBar();
    editing_.txtDesc_Change();
  }
  if (id == kDescriptionId && notification == EN_SETFOCUS) {
    descriptionEdited_ = true;
    InvalidateRect(controls_.txtDesc(), nullptr, FALSE);
  }
  const bool isField = id == kNameId || id == kFileNameId || id == kDescriptionId;
  if (isField && notification == EN_KILLFOCUS) PostMessageA(hWnd(), kFieldLeft, 0, 0);
}

/// Commits the field that has lost the focus to another control of the window. If another program or a
/// message box has the focus, the edit goes on when the user comes back.
void frmAddIn::FieldLeft() {
  const HWND focus = GetFocus();
  if (focus == nullptr || IsChild(hWnd(), focus) == 0) return;
  if (descriptionEdited_ && focus != controls_.txtDesc()) {
    descriptionEdited_ = false;
    controls_.txtDesc_LostFocus();
    InvalidateRect(controls_.txtDesc(), nullptr, FALSE);
  }
  if (focus != chooser_.txtFileName() && IsWindowVisible(chooser_.txtFileName()) != 0) {
    naming_.txtFileName_LostFocus();
  }
  if (focus != controls_.txtName()) editing_.SettleName();
  if (!controls_.txtCode().HasFocus()) editing_.txtCode_LostFocus();
}

/// The command of a key in the focused control, if any.
std::optional<int> frmAddIn::CommandOfKey(WPARAM key) const {
  const HWND focus = GetFocus();
  if (focus == nullptr) return std::nullopt;
  if (focus == controls_.txtName()) {
    if (key == VK_RETURN) return Command::kAcceptName;
    if (key == VK_ESCAPE) return Command::kCancelName;
  }
  if (focus == chooser_.txtFileName()) {
    if (key == VK_RETURN) return Command::kAcceptFileName;
    if (key == VK_ESCAPE) return Command::kCancelFileName;
  }
  if (focus == controls_.lstCode()) {
    if (key == VK_F2 && GetKeyState(VK_SHIFT) >= 0) return Command::kRenameSnippet;
    const bool control = GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0;
    // Ctrl+D works in the list only: pressed by mistake while typing, it would delete the snippet.
    if (key == VK_DELETE || (key == 'D' && control && GetKeyState(VK_SHIFT) >= 0))
      return Command::kDeleteSnippet;
    if (key == 'C' && control) return Command::kCopyCode;
    if (control) return ListCommandOfKey(key, GetKeyState(VK_SHIFT) < 0);
  }
  return std::nullopt;
}

bool frmAddIn::PreTranslate(MSG& message) {
  if (hWnd() == nullptr) return false;
  if (menus_.PreTranslate(message) || finding_.PreTranslate(message) || watch_.PreTranslate(message))
    return true;
  if (message.message == WM_TIMER) return false;  // frequent, and never a key
  const bool ours = message.hwnd == hWnd() || IsChild(hWnd(), message.hwnd) != 0;
  if (!ours) return false;
  if (RememberFocus()) menus_.StayInFront();
  if (message.message == WM_SYSKEYDOWN && message.wParam == VK_F4) {
    // Other controls leave Alt+F4 to the system; Wine 8's combo box swallows it.
    PostMessageA(hWnd(), WM_SYSCOMMAND, SC_CLOSE, 0);
    return true;
  }
  // No commands while the list of libraries is open: the library that they would work on is not chosen yet.
  if (!chooser_.ListIsOpen() && TranslateAcceleratorA(hWnd(), accelerators_.get(), &message) != 0)
    return true;
  if (message.message == WM_KEYDOWN) {
    if (const auto command = CommandOfKey(message.wParam)) {
      SendMessageA(hWnd(), WM_COMMAND, static_cast<WPARAM>(*command), 0);
      return true;
    }
  }
  if (message.message == WM_CHAR && message.hwnd == controls_.lstCode()) {
    TypeAhead(message);
    return true;
  }
  // The code field itself decides whether Tab moves the focus or is typed into the code.
  if (IsChild(controls_.txtCode().hWnd(), message.hwnd) != 0) return false;
  if (message.message == WM_KEYDOWN && message.wParam == VK_TAB) {
    // Not left to the dialog manager, which would select the whole code on entering the code field, so that
    // the next key replaced it; and a multi-line field leaves Tab to its parent, which is not a dialog.
    SetFocus(GetNextDlgTabItem(hWnd(), message.hwnd, GetKeyState(VK_SHIFT) < 0 ? TRUE : FALSE));
    return true;
  }
  return IsDialogMessageA(hWnd(), &message) != 0;
}

/// Selects the snippet whose name begins with the letters typed. Wine 8's list box compares first letters
/// only.
void frmAddIn::TypeAhead(const MSG& message) {
  constexpr DWORD pause = 1000;  // milliseconds, after which typing begins another name
  constexpr WPARAM controlBackspace = 0x7F;
  if (message.wParam < ' ' || message.wParam == controlBackspace || message.wParam > 0xFF) return;
  if (message.time - lastTyped_ > pause) typedName_.clear();
  lastTyped_ = message.time;
  typedName_ += static_cast<char>(message.wParam);
  // The same letter repeated goes through all names that begin with it.
  const bool sameLetter = typedName_.find_first_not_of(typedName_.front()) == std::string::npos;
  auto row = controls_.SelectNextByPrefix(typedName_);
  if (!row && sameLetter) row = controls_.SelectNextByPrefix(typedName_.substr(0, 1));
  if (row) editing_.lstCode_Click(*row);
}

bool frmAddIn::RememberFocus() {
  const HWND focus = GetFocus();
  if (IsChild(hWnd(), focus) == 0) return false;
  // Remember the code field instead of its inner control, which it may replace; it passes the focus on.
  const HWND field = controls_.txtCode().HasFocus() ? controls_.txtCode().hWnd() : focus;
  if (std::exchange(lastFocus_, field) == field) return false;
  typedName_.clear();
  return true;
}

HWND frmAddIn::FocusTarget() const {
  return IsChild(hWnd(), lastFocus_) != 0 && IsWindowVisible(lastFocus_) != 0 ? lastFocus_
                                                                              : controls_.lstCode();
}

/// Polls what no message reports: where the pointer is, how far the list is scrolled and, for torn-off menus,
/// whether the code field and the clipboard allow their commands.
void frmAddIn::Tick() {
  delivery_.ForgetLastDelivery();  // WM_TIMER comes only when no input is waiting
  const bool pointed = switches_[Switch::SnippetTips] && ShowListTip();
  // Scrolling the renamed row out of sight commits the name, as leaving the box does.
  if (!controls_.KeepNameBoxOnRow() && GetFocus() == controls_.txtName()) controls_.FocusList();
  const bool tornOff = menus_.UpdateTornOff();
  watch_.Tick();
  hover_.Ticked(pointed || tornOff || IsWindowVisible(controls_.txtName()) != 0);
}

LRESULT frmAddIn::ColorOfField(HWND field, HDC dc, UINT message) {
  const LRESULT brush = Default(message, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(field));
  // The description has another colour while it is edited: that of keywords, because COLOR_HOTLIGHT is nearly
  // white in some colour schemes.
  if (field == controls_.txtDesc() && descriptionEdited_) {
    SetTextColor(dc, CodeColoursOn(GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_WINDOWTEXT)).keyword);
  }
  return brush;
}

LRESULT frmAddIn::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_NCCREATE:
      // Not before: Wine's first window has the X library read a long table, character by character, and each
      // takes a lock once the process has a second thread. A start is 5 % quicker so with a
      // small library, 1.5 % with 10,000 snippets, whose reading then ends later.
      operations_.ReadAhead();
      return Default(message, wParam, lParam);
    case WM_CREATE:
      MakeControls();
      LoadSettings();
      ExtendSystemMenu(hWnd());
      finding_.LoadSystemKey();
      SetTimer(hWnd(), kWatchTimer, kWatchMs, nullptr);
      return 0;
    case WM_SIZE:
      Form_Resize();
      return 0;
    case WM_WINDOWPOSCHANGED:
      watch_.Follow();
      return Default(message, wParam, lParam);
    case WM_TIMER:
      if (wParam == kTipTimer || wParam == kWatchTimer) Tick();
      return 0;
    case WM_SETCURSOR:
      hover_.Start();
      return Default(message, wParam, lParam);
    case WM_ENABLE:
      finding_.Enable(wParam != 0);
      LookAround();
      return Default(message, wParam, lParam);
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) {
        RememberFocus();
      } else {
        watch_.OnActivate();
        LookAround();
      }
      return Default(message, wParam, lParam);
    case WM_SETFOCUS:
      // A minimised window keeps the focus itself; the field gets it back when the window is restored.
      if (IsIconic(hWnd()) == 0) SetFocus(FocusTarget());
      return 0;
    case WM_COMMAND:
      hover_.Start();
      if (lParam == 0) {
        OnKey(GET_WM_COMMAND_ID(wParam, lParam));
      } else {
        OnCommand(GET_WM_COMMAND_ID(wParam, lParam), GET_WM_COMMAND_CMD(wParam, lParam));
      }
      return 0;
    case WM_HOTKEY:
      finding_.FindOverOthers();
      return 0;
    case WM_SYSCOMMAND:
      if (const auto command = SystemMenuCommand(wParam)) return Do(*command), 0;
      return Default(message, wParam, lParam);
    case WM_CTLCOLOREDIT:
      return ColorOfField(reinterpret_cast<HWND>(lParam), reinterpret_cast<HDC>(wParam), message);
    case WM_CONTEXTMENU:
      if (reinterpret_cast<HWND>(wParam) == controls_.lstCode()) {
        OpenSnippetsMenu({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}, lParam == -1);
        return 0;
      }
      return Default(message, wParam, lParam);
    case WM_DROPFILES: {
      const UniqueDrop files(reinterpret_cast<HDROP>(wParam));
      DropFiles(files.get());
      return 0;
    }
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
      for (const HWND part : {bars_.cmd.hWnd(), bars_.cmdEdit.hWnd(), controls_.txtCode().hWnd()}) {
        SendMessageA(part, message, wParam, lParam);
      }
      return 0;
    case kFieldLeft:
      FieldLeft();
      return 0;
    case kLoadFiles:
      operations_.LoadFiles();
      return 0;
    case WM_CLOSE:
      CloseWindow();
      return 0;
    case WM_QUERYENDSESSION:
      if (IsWindowVisible(hWnd()) == 0) ShowForQuestion();
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
