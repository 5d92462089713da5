#include "ui/dialogs/frmSettings.h"

#include <commdlg.h>

#include <utility>

#include "platform/Fonts.h"
#include "platform/Win32Text.h"
#include "settings/SettingsText.h"
#include "ui/dialogs/CommonDialog.h"

namespace snip {
namespace {

constexpr int kRow = 13;  // of a check box, in dialog units

}  // namespace

void frmSettings::ShowMe(HWND owner) {
  ShowModal(owner, WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME);
}

void frmSettings::OnInit() {
  UseFont(MessageFontInFace("Tahoma"));
  SetWindowTextA(hWnd(), "Settings");
  AddControls();
  Form_Load();
  SetFocus(Item(chkFirstSwitch));
}

void frmSettings::AddControls() {
  int top = 7;
  for (std::size_t i = 0; i < kSwitches.size(); ++i, top += kRow) {
    AddButton(kSwitches[i].caption, IdOf(static_cast<Switch>(i)), {7, top, 206, 10},
              BS_AUTOCHECKBOX | (i == 0 ? WS_GROUP : 0));
  }

  Add("BUTTON", "Code Window Font", BS_GROUPBOX | WS_GROUP, -1, {7, top + 3, 206, 118});
  AddLabel("Font &Name:", {14, top + 15, 118, 8});
  Add("LISTBOX", "", WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, lstFontName,
      {14, top + 25, 118, 56}, WS_EX_CLIENTEDGE);
  AddLabel("Si&ze:", {139, top + 15, 67, 8});
  const HWND sizes = Add("COMBOBOX", "", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL,
                         cboFontSize, {139, top + 25, 67, 80});
  for (const char* size : {"10", "11", "12", "14", "16"}) {
    SendMessageA(sizes, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(size));
  }
  AddButton("Choose &Font...", cmdFont, {139, top + 67, 67, 14});
  AddLabel("Sample:", {14, top + 86, 118, 8});
  Add("STATIC", " ABCXYZabcxyz", SS_LEFT | SS_CENTERIMAGE, lblDisp, {14, top + 96, 192, 18},
      WS_EX_STATICEDGE);

  Add("STATIC", "", SS_ETCHEDHORZ, -1, {7, top + 128, 206, 1});  // Line1
  AddDefaultButton("OK", IDOK, {109, top + 136, 50, 14});
  AddButton("Cancel", IDCANCEL, {163, top + 136, 50, 14});
  SizeAndCentre({Across(220), Down(top + 157)});
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
  for (std::size_t i = 0; i < kSwitches.size(); ++i) {
    const auto which = static_cast<Switch>(i);
    CheckDlgButton(hWnd(), IdOf(which), target_.IsOn(which) ? BST_CHECKED : BST_UNCHECKED);
  }
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
  // The sample has the colours of the code field.
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
  for (std::size_t i = 0; i < kSwitches.size(); ++i) {
    const auto which = static_cast<Switch>(i);
    choices_.switches.Set(which, IsDlgButtonChecked(hWnd(), IdOf(which)) == BST_CHECKED);
  }
  ApplySettings(choices_, target_,
                [this](const char* valueName, const std::string& text) { store_.Save(valueName, text); });
  End(IDOK);
}

}  // namespace snip
