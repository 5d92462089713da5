#include "ui/main/frmAddIn.h"

#include <windowsx.h>
#include <commdlg.h>
#include <shellapi.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Clipboard.h"
#include "platform/FlagScope.h"
#include "platform/Fonts.h"
#include "platform/ScreenTwips.h"
#include "platform/Shell.h"
#include "platform/Text.h"
#include "platform/Win32Text.h"
#include "resources/resource.h"
#include "settings/SettingsText.h"
#include "ui/commandbar/PropertyFont.h"
#include "ui/dialogs/CommonDialog.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmSettings.h"
#include "ui/main/MainToolbars.h"
#include "ui/main/MainWindowKeys.h"
#include "ui/main/MainWindowLayout.h"

namespace snip {
namespace {

// The design-time sizes, in twips.
constexpr Size kDesignSize{10800, 7200};
constexpr int kDesignLeftPaneWidth = 3000;
constexpr int kDesignDescriptionHeight = 800;
constexpr int kBarHeight = 390;
constexpr int kBarPicture = 240;
constexpr int kAttachPanelWidth = 1500;
constexpr Size kAttachButton{1320, 345};

// Between the library chooser and the bar that it lies on, in twips.
constexpr int kChooserRightMargin = 40;
constexpr int kFileNameInset = 60;
constexpr int kFileNameNarrower = 330;
/// The highlight along the list lies this far inside the pane, in twips.
constexpr int kFrameInset = 15;

constexpr UINT_PTR kTipTimer = 1;

constexpr const char* kWebPage =
    "https://learn.microsoft.com/en-us/previous-versions/visualstudio/visual-basic-6/"
    "visual-basic-6.0-documentation";

/// Posted to the window itself when an edit field has lost the focus: only afterwards can be told where the
/// focus went, and only then may a message box be shown.
constexpr UINT kFieldLeft = WM_APP + 1;
/// Sent by `Show` to a new window: what it does is done as all else, in answer to a message.
constexpr UINT kLoadFiles = WM_APP + 2;

/// The file dialog makes the chosen folder the process's own, which then could not be removed or ejected.
class CurrentDirectoryScope {
 public:
  CurrentDirectoryScope() { GetCurrentDirectoryA(static_cast<DWORD>(path_.size()), path_.data()); }
  ~CurrentDirectoryScope() { SetCurrentDirectoryA(path_.data()); }
  CurrentDirectoryScope(const CurrentDirectoryScope&) = delete;
  CurrentDirectoryScope& operator=(const CurrentDirectoryScope&) = delete;

 private:
  std::array<char, MAX_PATH> path_{};
};

std::string DroppedFile(HDROP files, UINT index) {
  std::string path(DragQueryFileA(files, index, nullptr, 0) + std::size_t{1}, '\0');
  path.resize(DragQueryFileA(files, index, path.data(), static_cast<UINT>(path.size())));
  return path;
}

}  // namespace

frmAddIn::frmAddIn(Services services)
    : services_(std::move(services)),
      twips_(ScreenTwips()),
      cmd_({.sounds = services_.sounds, .tip = &barTip_, .showMessage = services_.showMessage},
           {.ButtonClicked = [this](int index) { cmd_ButtonClicked(index); },
            .Dropdown = [this](int) { cmd_Dropdown(); },
            .Resize = [this] { cmd_Resize(); }}),
      cmdEdit_({.sounds = services_.sounds, .tip = &barTip_, .showMessage = services_.showMessage},
               {.ButtonClicked = [this](int index) { cmdEdit_ButtonClicked(index); }}),
      picSplt_(Splitter::Divides::Columns, [this](int left) { picSplt_MouseUp(left); }),
      picHSplt_(Splitter::Divides::Rows, [this](int top) { picHSplt_MouseUp(top); }),
      controls_({.gotFocus = [] {},
                 .lostFocus = [this] { PostMessageA(hWnd(), kFieldLeft, 0, 0); },
                 .keyPress = [this](char key) { editing_.txtCode_KeyPress(key); },
                 .dblClick = [this] { editing_.txtCode_DblClick(); },
                 .mouseDown = [this](int button, POINT screen) { txtCode_MouseDown(button, screen); },
                 .contextMenu = [this](POINT screen) { OpenEditMenu(screen); }},
                {.setEditingDisabled = [this](bool disabled) { GrayLibraryButtons(cmd_, disabled); },
                 .setEditMode =
                     [this](bool editing) {
                       // The button shows what it does next: to edit, or to commit the edit.
                       const Size picture{twips_.ToPixelsX(kBarPicture), twips_.ToPixelsY(kBarPicture)};
                       cmd_.SetPicture(
                           MainButton::kEditSnippet,
                           Picture::FromResource(editing ? IDB_COMMIT : IDB_EDIT_SNIPPET, picture));
                       cmd_.RedrawButton(MainButton::kEditSnippet);
                       SetTabStop(chooser_.cboFiles(), !editing);
                     }}),
      menus_(services_.sounds, [this](MSG& message) { return PreTranslate(message); },
             {.mnuModFuncs_Clicked = [this](int index) { mnuModFuncs_Clicked(index); },
              .mnuModFuncs_HideMenu = [this] { cmd_.Thaw(); },
              .mnuSnippets_Clicked = [this](int index) { mnuSnippets_Clicked(index); },
              .mnuAttach_Clicked = [this](int index) { mnuAttach_Clicked(index); },
              .mnuEdit_Clicked = [this](int index) { mnuEdit_Clicked(index); }}),
      editing_(library_, controls_, services_.showMessage, &SameTextIgnoringCase),
      operations_(library_, editing_, controls_, chooser_, services_.store, services_.showMessage),
      naming_(editing_, operations_, controls_, chooser_, services_.store, services_.showMessage),
      attachments_(library_, editing_, controls_, *this),
      output_(library_, controls_, services_.showMessage),
      accelerators_(MakeAccelerators()),
      leftPaneWidth_(kDesignLeftPaneWidth),
      descriptionHeight_(kDesignDescriptionHeight) {}

frmAddIn::~frmAddIn() {
  Destroy();
}

// --- Life -------------------------------------------------------------------------------------------------

bool frmAddIn::Show(HostEnvironment* host) {
  host_ = host;
  output_.SetHost(host);
  if (hWnd() == nullptr) {
    if (!Form_Load()) return false;
    SendMessageA(hWnd(), kLoadFiles, 0, 0);
  }
  ShowWindow(hWnd(), IsIconic(hWnd()) != 0 ? SW_RESTORE : SW_SHOW);
  ShowOwnedPopups(hWnd(), TRUE);
  SetForegroundWindow(GetLastActivePopup(hWnd()));
  UpdateWindow(hWnd());
  return true;
}

void frmAddIn::Hide() {
  tTip_.Hide();
  menus_.Unload();
  ShowOwnedPopups(hWnd(), FALSE);  // an open dialog goes and comes with the window
  ShowWindow(hWnd(), SW_HIDE);
}

void frmAddIn::Unload() {
  host_ = nullptr;
  output_.SetHost(nullptr);
  if (hWnd() == nullptr || unloading_) return;
  ShowForQuestion();
  // Another environment may have taken the window meanwhile.
  if (Form_QueryUnload() && host_ == nullptr) DestroyWindow(hWnd());
}

/// A question about a window that is not seen would be seen by nobody.
void frmAddIn::ShowForQuestion() {
  if (!editing_.SettleName()) editing_.txtName_Cancel();  // nobody waits for another name
  editing_.txtCode_LostFocus();
  if (!library_.Saved && !library_.LibraryName.empty()) Show(host_);
}

bool frmAddIn::Form_Load() {
  font_ = MessageFont();
  leftPaneWidth_ = kDesignLeftPaneWidth;
  descriptionHeight_ = kDesignDescriptionHeight;
  const Rect place = twips_.ToPixels({0, 0, kDesignSize.width, kDesignSize.height});
  return Create({.className = "frmAddIn",
                 .title = kMainWindowTitle,
                 .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                 .exStyle = WS_EX_CONTROLPARENT | WS_EX_ACCEPTFILES,
                 .place = {CW_USEDEFAULT, CW_USEDEFAULT, place.width, place.height},
                 .iconId = IDI_SNIPSTORE});
}

void frmAddIn::MakeControls() {
  LOGFONTA font{};
  GetObjectA(font_.get(), sizeof font, &font);
  const FontProperty barFont = FontPropertyOf(font, twips_);
  const Size picture{twips_.ToPixelsX(kBarPicture), twips_.ToPixelsY(kBarPicture)};

  captionHook_.Install(hWnd(), services_.caption);
  barTip_.Load();
  barTip_.SetFont(font_.get());
  menus_.Fill();
  // In Tab order. The parts that lie over others come first, since a sibling is put beneath those before it.
  chooser_.Create(hWnd(), kFilesId, kFileNameId, font_.get());
  cmd_.CreateIn(hWnd(), kMainBarId, "Main toolbar", barFont);
  FillMainToolbar(cmd_, picture);
  controls_.CreateNameBox(hWnd(), kNameId, font_.get());
  picSplt_.CreateIn(hWnd());
  leftPane_.CreateIn(hWnd(), "Snippets", [this](HDC dc) { LeftPane_Paint(dc); });
  rightPane_.CreateIn(hWnd(), "Snippet");
  picHSplt_.CreateIn(rightPane_.hWnd());
  controls_.Create(leftPane_.hWnd(), rightPane_.hWnd(),
                   {.lstCode = kListId, .txtDesc = kDescriptionId, .txtCode = kCodeId}, font_.get());
  picAttach_.CreateIn(rightPane_.hWnd(), "Snippet Attachment");
  cmdAttach_ = CreateControl(picAttach_.hWnd(), "BUTTON", "Attachment",
                             WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, 0, kAttachId, font_.get(),
                             twips_.ToPixels({0, 0, kAttachButton.width, kAttachButton.height}));
  cmdEdit_.CreateIn(rightPane_.hWnd(), kEditBarId, "Editor toolbar", barFont);
  FillEditToolbar(cmdEdit_, picture);
  // Tab goes through the siblings from the top: to the attachment before the code.
  SetWindowPos(picAttach_.hWnd(), controls_.txtDesc(), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);

  tTip_.Load(leftPane_.hWnd(), controls_.lstCode());
  tTip_.TakeListFont();
  LoadSettings();
  SetTimer(hWnd(), kTipTimer, ListTips::kIntervalMs, nullptr);
}

void frmAddIn::LoadSettings() {
  const Settings settings = services_.settings.Load();
  SetKeepOnTop(settings.KeepOnTop);
  if (settings.KeepOnTop) cmd_.SetState(MainButton::kKeepOnTop, 1);
  allowMenuDrag_ = settings.AllowMenuDrag;
  cmd_.SetPlaysSounds(settings.UseSounds);
  cmdEdit_.SetPlaysSounds(cmd_.PlaysSounds());
  minimizeOnView_ = settings.MinimizeOnView;
  snippetTips_ = settings.SnippetTips;

  FontProperty font = controls_.Font();
  if (settings.FontName) font.Name = *settings.FontName;
  if (settings.FontSize) font.Size = *settings.FontSize;
  controls_.SetFont(font);
  cmdEdit_.SetState(EditButton::kSyntaxHighlighting, settings.ColorSyntax);
  controls_.txtCode().SetSyntaxColors(cmdEdit_.state(EditButton::kSyntaxHighlighting) != 0);

  if (settings.LeftPaneWidth) leftPaneWidth_ = std::max(*settings.LeftPaneWidth, kLeastLeftPaneWidth);
  if (settings.DescriptionHeight) {
    descriptionHeight_ = std::max(*settings.DescriptionHeight, kLeastDescriptionHeight);
  }
  RECT place{};
  GetWindowRect(hWnd(), &place);
  const Size design = twips_.ToTwips(
      {static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top)});
  const Rect wanted{RoundHalfToEven(settings.Left), RoundHalfToEven(settings.Top),
                    settings.Width.value_or(design.width), settings.Height.value_or(design.height)};
  MoveTo(hWnd(), twips_.ToPixels(wanted));

  // There is no earlier layout yet that a window with too little room could keep.
  // A pixel less, since the panes' edges lie on whole pixels; and some of the code is to be seen.
  Size room = RoomForSplitters(twips_.ToTwips(ClientSize(hWnd())), kBarHeight);
  room.width -= twips_.ToTwipsX(1);
  room.height -= twips_.ToTwipsY(1) + kBarHeight;
  leftPaneWidth_ = std::max(kLeastLeftPaneWidth, std::min(leftPaneWidth_, room.width));
  descriptionHeight_ = std::max(kLeastDescriptionHeight, std::min(descriptionHeight_, room.height));
  Form_Resize();
}

/// Takes in what is being edited and offers to save; false when the window has to stay. While the question
/// is open, another program may ask the window to close once more: then it has to stay as well.
bool frmAddIn::Form_QueryUnload() {
  if (unloading_ || !editing_.SettleName()) return false;
  const FlagScope unloading(unloading_);
  editing_.txtCode_LostFocus();
  operations_.OfferToSave();
  return true;
}

void frmAddIn::CloseWindow() {
  if (host_ != nullptr) {
    // The environment keeps the window loaded, and the library in it, until it lets go of the add-in.
    Hide();
    services_.hidden();
    return;
  }
  if (Form_QueryUnload()) DestroyWindow(hWnd());
}

void frmAddIn::Form_Unload() {
  KillTimer(hWnd(), kTipTimer);
  menus_.Unload();
  tTip_.Unload();
  barTip_.Destroy();
  captionHook_.Remove();
  CloseSettings();
  // The window may be made again: it then starts from its files.
  library_ = {};
  editing_.Forget();
  lastFocus_ = nullptr;
  descriptionEdited_ = false;
  services_.unloaded();
}

void frmAddIn::CloseSettings() {
  // The place that is kept is that of the window as it is neither minimised nor maximised.
  if (IsIconic(hWnd()) != 0 || IsZoomed(hWnd()) != 0) ShowWindow(hWnd(), SW_SHOWNOACTIVATE);
  RECT place{};
  GetWindowRect(hWnd(), &place);
  services_.settings.SaveWindow({.KeepOnTop = cmd_.state(MainButton::kKeepOnTop),
                                 .ColorSyntax = cmdEdit_.state(EditButton::kSyntaxHighlighting),
                                 .Top = place.top * twips_.y,
                                 .Left = place.left * twips_.x,
                                 .Width = (place.right - place.left) * twips_.x,
                                 .Height = (place.bottom - place.top) * twips_.y,
                                 .LeftPaneWidth = static_cast<double>(leftPaneWidth_),
                                 .DescriptionHeight = static_cast<double>(descriptionHeight_)});
}

// --- Layout -----------------------------------------------------------------------------------------------

void frmAddIn::Form_Resize() {
  if (IsIconic(hWnd()) != 0) return;
  const Size pixels = ClientSize(hWnd());
  MoveTo(cmd_.hWnd(), {0, 0, pixels.width, twips_.ToPixelsY(kBarHeight)});
  const auto places = LayOutMainWindow({.client = twips_.ToTwips(pixels),
                                        .barHeight = kBarHeight,
                                        .leftPaneWidth = leftPaneWidth_,
                                        .rightPaneTop = kBarHeight + 15,
                                        .splitterRight = leftPaneWidth_ + kSplitterSize});
  if (!places) return;
  MoveTo(leftPane_.hWnd(), twips_.ToPixels(places->leftPane));
  MoveTo(rightPane_.hWnd(), twips_.ToPixels(places->rightPane));
  MoveTo(picSplt_.hWnd(), twips_.ToPixels(places->splitter));

  constexpr int leastListHeight = 350;
  const Size list = ClientSize(leftPane_.hWnd());
  if (twips_.ToTwipsY(list.height) >= leastListHeight) {
    MoveTo(controls_.lstCode(), {0, 0, list.width, list.height});
  }
  RightPane_Resize();
}

void frmAddIn::cmd_Resize() {
  chooser_.Place({.left = twips_.ToPixelsX(cmd_.NextButtonX()),
                  .bar = ClientSize(cmd_.hWnd()),
                  .rightMargin = twips_.ToPixelsX(kChooserRightMargin),
                  .boxInset = twips_.ToPixelsX(kFileNameInset),
                  .boxNarrower = twips_.ToPixelsX(kFileNameNarrower)});
}

void frmAddIn::LeftPane_Paint(HDC dc) {
  const Rect list = PlaceInParent(controls_.lstCode());
  const int right = list.right() - twips_.ToPixelsX(kFrameInset);
  const int bottom = list.bottom() - twips_.ToPixelsY(kFrameInset);
  const RECT below{0, bottom, right + 1, bottom + 1};
  const RECT beside{right, 0, right + 1, bottom + 1};
  FillRect(dc, &below, GetSysColorBrush(COLOR_3DHILIGHT));
  FillRect(dc, &beside, GetSysColorBrush(COLOR_3DHILIGHT));
}

void frmAddIn::RightPane_Resize(bool evenIfTooLow) {
  const RightPaneSizes sizes{.inner = twips_.ToTwips(ClientSize(rightPane_.hWnd())),
                             .descriptionHeight = descriptionHeight_,
                             .attachPanelWidth = kAttachPanelWidth,
                             .editBarHeight = kBarHeight,
                             .splitterBottom = descriptionHeight_ + kSplitterSize};
  auto places = LayOutRightPane(sizes);
  if (!places && evenIfTooLow) places = PlaceRightPane(sizes);
  if (!places) return;
  MoveTo(picAttach_.hWnd(), twips_.ToPixels(places->attachPanel));
  MoveTo(controls_.txtDesc(), twips_.ToPixels(places->description));
  MoveTo(cmdEdit_.hWnd(), twips_.ToPixels(places->editBar));
  MoveTo(controls_.txtCode().hWnd(), twips_.ToPixels(places->code));
  MoveTo(picHSplt_.hWnd(), twips_.ToPixels(places->splitter));

  const Size panel = ClientSize(picAttach_.hWnd());
  Rect button = PlaceInParent(cmdAttach_);
  button.left = (panel.width - button.width) / 2;
  button.top = (panel.height - button.height) / 2;
  MoveTo(cmdAttach_, button);
}

void frmAddIn::picSplt_MouseUp(int left) {
  leftPaneWidth_ = LeftPaneWidthAfterDrop(twips_.ToTwipsX(left), twips_.ToTwipsX(ClientSize(hWnd()).width));
  MoveTo(picSplt_.hWnd(), {twips_.ToPixelsX(leftPaneWidth_), PlaceInParent(picSplt_.hWnd()).top,
                           twips_.ToPixelsX(kSplitterSize), ClientSize(picSplt_.hWnd()).height});
  Form_Resize();
}

void frmAddIn::picHSplt_MouseUp(int top) {
  descriptionHeight_ =
      DescriptionHeightAfterDrop(twips_.ToTwipsY(top), twips_.ToTwipsY(ClientSize(rightPane_.hWnd()).height));
  // Dropped near the bottom it leaves the code no room; what the user asked for is done all the same.
  RightPane_Resize(true);
}

// --- Toolbars and menus -----------------------------------------------------------------------------------

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
  if (mode == kPasteToCodeWindow) {
    output_.PasteCode();
  } else if (mode == kCopyToClipboard) {
    CopyCode();
  } else {
    const int entry = chooser_.SelectedFile();
    output_.PasteToNewModule(entry < 0 ? std::string() : chooser_.FileText(entry));
  }
}

void frmAddIn::CopyCode() {
  if (controls_.RowCount() == 0) return;  // what is shown then is no code
  Copy(controls_.Code());
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
  PopUp(menus_.mnuModFuncs, screen);
}

void frmAddIn::mnuModFuncs_Clicked(int index) {
  const OutputMode& mode = OutputModeAt(index);
  const Size picture{twips_.ToPixelsX(kBarPicture), twips_.ToPixelsY(kBarPicture)};
  cmd_.SetCaption(MainButton::kOutput, mode.caption);
  cmd_.SetPicture(MainButton::kOutput, Picture::FromResource(mode.picture, picture));
  cmd_.RedrawButton(MainButton::kOutput);
  cmd_ButtonClicked(MainButton::kOutput);
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
    if (HIWORD(entry) == 0 && LOWORD(entry) < controls_.RowCount() &&
        LOWORD(entry) != controls_.SelectedRow()) {
      controls_.SelectRow(LOWORD(entry));
      editing_.lstCode_Click();
    }
  }
  for (const int item : {SnippetsItem::kRename, SnippetsItem::kEdit, SnippetsItem::kDelete}) {
    menus_.mnuSnippets.SetIEnabled(item, !editing_.editingDisabled());
  }
  PopUp(menus_.mnuSnippets, screen);
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
  menus_.mnuAttach.SetIEnabled(AttachItem::kView, attachments_.CanView());
  RECT place{};
  GetWindowRect(cmdAttach_, &place);
  PopUp(menus_.mnuAttach, {place.left, place.bottom});
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
  const CurrentDirectoryScope directory;
  dialog.ShowOpen();
  return dialog.FileName.empty() ? std::nullopt : std::optional(dialog.FileName);
}

void frmAddIn::ShowListTip() {
  // The box over the row that is renamed would be covered.
  if (IsWindowVisible(controls_.txtName()) != 0) {
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
  const BnRichEdit& code = controls_.txtCode();
  const bool selected = code.SelLength() > 0;
  frmMenu& menu = menus_.mnuEdit;
  menu.SetIEnabled(EditItem::kEdit, !editing_.editingDisabled());
  menu.SetIEnabled(EditItem::kUndo, !code.locked() && code.CanUndo());
  menu.SetIEnabled(EditItem::kCut, !code.locked() && selected);
  menu.SetIEnabled(EditItem::kCopy, selected);  // nothing would take the place of what the clipboard holds
  menu.SetIEnabled(EditItem::kPaste, !code.locked() && ClipboardHasText());
  PopUp(menu, screen);
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
      // A torn-off menu shows what was possible when it was opened.
      if (!code.locked() && code.SelLength() > 0 && Copy(code.SelText())) code.ReplaceSelection("");
      break;
    case EditItem::kCopy:
      if (code.SelLength() > 0) Copy(code.SelText());
      break;
    case EditItem::kPaste:
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
  const UINT count = DragQueryFileA(files, 0xFFFFFFFF, nullptr, 0);
  const bool attaches = PtInRect(&panel, place) != 0;
  std::string path;
  for (UINT i = 0; i < count && path.empty(); ++i) {
    std::string file = DroppedFile(files, i);
    if (attaches || HasLibraryExtension(file)) path = std::move(file);
  }
  if (path.empty()) return;
  SetForegroundWindow(hWnd());
  if (attaches) {
    attachments_.SetAttachment(path);
  } else {
    operations_.OpenOutside(path);
  }
}

// --- Keys and fields --------------------------------------------------------------------------------------

void frmAddIn::OnKeyCommand(int command) {
  using namespace Command;
  if (command >= kEditButton && command < kRenameSnippet) {
    cmdEdit_.DoDefaultAction(command - kEditButton);
    return;
  }
  if (command >= kMainButton && command < kEditButton) {
    cmd_.DoDefaultAction(command - kMainButton);
    return;
  }
  switch (command) {
    case kRenameSnippet:
      editing_.lstCode_DblClick();
      break;
    case kDeleteSnippet:
      cmd_ButtonClicked(MainButton::kDeleteSnippet);
      break;
    case kCopyCode:
      CopyCode();
      break;
    case kOutputMenu:
      if (!cmd_.Grayed(MainButton::kOutput)) cmd_Dropdown();
      break;
    case kAttachmentMenu:
      cmdAttach_Click();
      break;
    case kAcceptName:
      editing_.SettleName();
      break;
    case kCancelName:
      editing_.txtName_Cancel();
      break;
    case kAcceptFileName:
      naming_.AcceptName();
      break;
    case kCancelFileName:
      naming_.txtFileName_LostFocus();
      break;
    default:
      break;
  }
}

void frmAddIn::OnCommand(int id, int notification) {
  if (id == kFilesId && notification == CBN_SELCHANGE) operations_.cboFiles_Click();
  if (id == kListId && notification == LBN_SELCHANGE) editing_.lstCode_Click();
  if (id == kListId && notification == LBN_DBLCLK) editing_.lstCode_DblClick();
  if (id == kNameId && notification == EN_CHANGE) controls_.txtName_Change();
  if (id == kFileNameId && notification == EN_CHANGE) naming_.txtFileName_Change();
  if (id == kAttachId && notification == BN_CLICKED) cmdAttach_Click();
  if (id == kDescriptionId && notification == EN_CHANGE && !controls_.settingDescription()) {
    editing_.txtDesc_Change();
  }
  if (id == kDescriptionId && notification == EN_SETFOCUS) {
    descriptionEdited_ = true;
    InvalidateRect(controls_.txtDesc(), nullptr, FALSE);
  }
  const bool isField = id == kNameId || id == kFileNameId || id == kDescriptionId;
  if (isField && notification == EN_KILLFOCUS) PostMessageA(hWnd(), kFieldLeft, 0, 0);
}

/// Commits what was edited in a field that has lost the focus to another field. When another program or a
/// message has it, the user comes back to the field as it is.
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

/// The command that a key stands for in the control that has the focus, if any.
std::optional<int> frmAddIn::CommandOfKey(WPARAM key) const {
  const HWND focus = GetFocus();
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
    if (key == VK_DELETE) return Command::kDeleteSnippet;
    if (key == 'C' && GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0) return Command::kCopyCode;
  }
  return std::nullopt;
}

bool frmAddIn::PreTranslate(MSG& message) {
  if (hWnd() == nullptr) return false;
  if (menus_.PreTranslate(message)) return true;
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

LRESULT frmAddIn::ColorOfField(HWND field, HDC dc, UINT message) {
  const LRESULT brush = Default(message, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(field));
  // The description stands out while it is edited, in a colour that the system keeps readable.
  if (field == controls_.txtDesc() && descriptionEdited_) SetTextColor(dc, GetSysColor(COLOR_HOTLIGHT));
  return brush;
}

LRESULT frmAddIn::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      MakeControls();
      return 0;
    case WM_SIZE:
      Form_Resize();
      return 0;
    case WM_TIMER:
      if (wParam == kTipTimer && snippetTips_) ShowListTip();
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
        OnKeyCommand(GET_WM_COMMAND_ID(wParam, lParam));
      } else {
        OnCommand(GET_WM_COMMAND_ID(wParam, lParam), GET_WM_COMMAND_CMD(wParam, lParam));
      }
      return 0;
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
      for (const HWND part : {cmd_.hWnd(), cmdEdit_.hWnd(), controls_.txtCode().hWnd()}) {
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
