#include "ui/dialogs/frmSettings.h"

#include <commdlg.h>

#include <utility>

#include "platform/Fonts.h"
#include "platform/Win32Text.h"
#include "settings/SettingsText.h"
#include "ui/dialogs/CommonDialog.h"

namespace snip {
namespace {

bool IsTicked(HWND dialog, int id) {
  return IsDlgButtonChecked(dialog, id) == BST_CHECKED;
}

void Tick(HWND dialog, int id, bool ticked) {
  CheckDlgButton(dialog, id, ticked ? BST_CHECKED : BST_UNCHECKED);
}

}  // namespace

void frmSettings::ShowMe(HWND owner) {
  ShowModal(owner, WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME);
}

void frmSettings::OnInit() {
  UseFont(MessageFontInFace("Tahoma"));
  SetWindowTextA(hWnd(), "Settings");
  AddControls();
  Form_Load();
  SetFocus(Item(chkShowTips));
}

void frmSettings::AddControls() {
  AddButton("Show &tips on snippet list", chkShowTips, {7, 7, 206, 10}, BS_AUTOCHECKBOX | WS_GROUP);
  AddButton("&Minimize Snipstore when viewing attachments", chkMinimize, {7, 20, 206, 10}, BS_AUTOCHECKBOX);
  AddButton("&Use sound effects for CommandBar buttons", chkToolbarSounds, {7, 33, 206, 10}, BS_AUTOCHECKBOX);
  AddButton("&Allow dragging of dropdown menus", chkMenuDrag, {7, 46, 206, 10}, BS_AUTOCHECKBOX);

  Add("BUTTON", "Code Window Font", BS_GROUPBOX | WS_GROUP, -1, {7, 62, 206, 118});
  AddLabel("Font &Name:", {14, 74, 118, 8});
  Add("LISTBOX", "", WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, lstFontName,
      {14, 84, 118, 56}, WS_EX_CLIENTEDGE);
  AddLabel("Si&ze:", {139, 74, 67, 8});
  const HWND sizes = Add("COMBOBOX", "", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL,
                         cboFontSize, {139, 84, 67, 80});
  for (const char* size : {"10", "11", "12", "14", "16"}) {
    SendMessageA(sizes, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(size));
  }
  AddButton("Choose &Font...", cmdFont, {139, 126, 67, 14});
  AddLabel("Sample:", {14, 145, 118, 8});
  Add("STATIC", " ABCXYZabcxyz", SS_LEFT | SS_CENTERIMAGE, lblDisp, {14, 155, 192, 18}, WS_EX_STATICEDGE);

  Add("STATIC", "", SS_ETCHEDHORZ, -1, {7, 187, 206, 1});  // Line1
  AddDefaultButton("OK", IDOK, {109, 195, 50, 14});
  AddButton("Cancel", IDCANCEL, {163, 195, 50, 14});
  SizeAndCentre({Across(220), Down(216)});
}

void frmSettings::Form_Load() {
  SetWindowPos(hWnd(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  PaintCaption();
  const FontProperty codeFont = target_.CodeFont();
  const FontNames names = FontNamesFor(codeFont.Name);
  for (const std::string& name : names.entries) {
    SendMessageA(Item(lstFontName), LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
  }
  SendMessageA(Item(lstFontName), LB_SETCURSEL, static_cast<WPARAM>(names.selected), 0);
  lstFontName_Click();
  SetFontSizeText(RoundHalfToEven(codeFont.Size));
  Tick(hWnd(), chkMenuDrag, target_.AllowMenuDrag());
  Tick(hWnd(), chkToolbarSounds, target_.PlaysSounds());
  Tick(hWnd(), chkMinimize, target_.MinimizeOnView());
  Tick(hWnd(), chkShowTips, target_.SnippetTips());
}

void frmSettings::OnCommand(int id, int notification) {
  if (id == lstFontName && notification == LBN_SELCHANGE) lstFontName_Click();
  if (id == cboFontSize && notification == CBN_EDITCHANGE) cboFontSize_Change();
  if (id == cboFontSize && notification == CBN_SELCHANGE) cboFontSize_Click();
  if (notification != BN_CLICKED) return;
  if (id == cmdFont) cmdFont_Click();
  if (id == IDOK) cmdOK_Click();
  if (id == IDCANCEL) End(IDCANCEL);
}

INT_PTR frmSettings::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_CTLCOLORSTATIC || reinterpret_cast<HWND>(lParam) != Item(lblDisp)) return FALSE;
  // The sample looks as the code field does.
  const auto dc = reinterpret_cast<HDC>(wParam);
  SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
  SetBkColor(dc, GetSysColor(COLOR_WINDOW));
  return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
}

void frmSettings::lstFontName_Click() {
  const LRESULT selected = SendMessageA(Item(lstFontName), LB_GETCURSEL, 0, 0);
  if (selected == LB_ERR) {
    ShowSample();
    return;
  }
  choices_.font.Name = ListBoxText(Item(lstFontName), static_cast<int>(selected));
  ShowSample();
}

void frmSettings::cboFontSize_Change() {
  TakeFontSize(WindowText(Item(cboFontSize)));
}

void frmSettings::cboFontSize_Click() {
  // The field does not hold the entry's text yet.
  const LRESULT selected = SendMessageA(Item(cboFontSize), CB_GETCURSEL, 0, 0);
  TakeFontSize(ComboBoxText(Item(cboFontSize), static_cast<int>(selected)));
}

void frmSettings::TakeFontSize(const std::string& text) {
  const std::optional<float> points = SingleFromText(text);
  if (!points || !IsFontSize(*points)) return;
  choices_.font.Size = *points;
  ShowSample();
}

void frmSettings::SetFontSizeText(int points) {
  SetWindowTextA(Item(cboFontSize), std::to_string(points).c_str());
  cboFontSize_Change();
}

void frmSettings::ShowSample() {
  UniqueFont font = FontOfSize(choices_.font.Name, choices_.font.Size);
  SendMessageA(Item(lblDisp), WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
  sampleFont_ = std::move(font);  // the former one is no longer in use
}

void frmSettings::SelectFontName(const std::string& name) {
  const HWND list = Item(lstFontName);
  const auto text = reinterpret_cast<LPARAM>(name.c_str());
  LRESULT entry = SendMessageA(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), text);
  if (entry == LB_ERR) entry = SendMessageA(list, LB_ADDSTRING, 0, text);
  SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(entry), 0);
}

void frmSettings::cmdFont_Click() {
  const FontProperty codeFont = target_.CodeFont();
  CommonDialog dialog;
  dialog.FontName = codeFont.Name;
  dialog.FontSize = RoundHalfToEven(codeFont.Size);
  dialog.Flags = CF_SCREENFONTS | CF_PRINTERFONTS;
  dialog.CancelError = true;  // else a cancelled dialog would look like one that chose the code font
  if (dialog.ShowFont() == CommonDialog::kCancelError) return;
  // A list entry ends at the first zero byte of the field that the name comes in.
  const std::string name = dialog.FontName.substr(0, dialog.FontName.find('\0'));
  if (name.empty()) return;
  SelectFontName(name);
  SetFontSizeText(dialog.FontSize);
  choices_.font.Name = name;
  ShowSample();
}

void frmSettings::cmdOK_Click() {
  choices_.allowMenuDrag = IsTicked(hWnd(), chkMenuDrag);
  choices_.playsSounds = IsTicked(hWnd(), chkToolbarSounds);
  choices_.minimizeOnView = IsTicked(hWnd(), chkMinimize);
  choices_.snippetTips = IsTicked(hWnd(), chkShowTips);
  ApplySettings(choices_, target_,
                [this](const char* valueName, const std::string& text) { store_.Save(valueName, text); });
  End(IDOK);
}

}  // namespace snip
