#include "ui/dialogs/frmFields.h"

#include <algorithm>
#include <utility>

#include "platform/Fonts.h"
#include "platform/Win32Text.h"

namespace snip {
namespace {

constexpr int kMostAsked = 100;
constexpr int kMostInSight = 10;

// In dialog units.
constexpr int kMargin = 7;
constexpr int kWidth = 280;
constexpr int kLabelWidth = 80;
constexpr int kRowHeight = 16;  // a multiple of 8 gives whole pixels with every font
constexpr int kPreviewHeight = 96;
constexpr int kButtonHeight = 14;
constexpr int kBelowRows = 12 + kPreviewHeight + kMargin + kButtonHeight + kMargin;

const std::string& DefaultOf(const CodeField& field) {
  return field.choices.empty() ? field.name : field.choices.front();
}

}  // namespace

std::optional<FieldTexts> frmFields::ShowMe(HWND owner, const std::vector<CodeField>& fields,
                                            const Preview& preview) {
  fields_ = &fields;
  preview_ = &preview;
  for (const CodeField& field : fields) texts_[field.name] = DefaultOf(field);
  count_ = std::min(kMostAsked, static_cast<int>(fields.size()));
  if (ShowModal(owner, WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME) != IDOK) return std::nullopt;
  return texts_;
}

void frmFields::OnInit() {
  UseFont(MessageFont());
  codeFont_ = FontOfSize(codeFontProperty_.Name, codeFontProperty_.Size);
  SetWindowTextA(hWnd(), "Fill In Fields");
  const int frame = GetSystemMetrics(SM_CYCAPTION) + 2 * GetSystemMetrics(SM_CYFIXEDFRAME);
  const int room = WorkArea(hWnd()).height - frame - Down(kMargin + kBelowRows);
  const int inSight = std::min({count_, kMostInSight, std::max(1, room / Down(kRowHeight))});
  const int height = inSight * kRowHeight;
  rows_.CreateIn(hWnd(), Pixels({0, kMargin, kWidth, height}), Down(kRowHeight), count_);
  AddFields();
  const int top = kMargin + height;
  const std::string label = fields_->size() == static_cast<std::size_t>(count_)
                                ? "Code:"
                                : "Code (only the first " + std::to_string(count_) + " of " +
                                      std::to_string(fields_->size()) + " fields can be filled in):";
  AddLabel(label.c_str(), {kMargin, top + 2, kWidth - 2 * kMargin, 9});
  const HWND code =
      Add("EDIT", "",
          WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | ES_AUTOHSCROLL,
          kPreviewId, {kMargin, top + 12, kWidth - 2 * kMargin, kPreviewHeight}, WS_EX_CLIENTEDGE);
  SendMessageA(code, WM_SETFONT, reinterpret_cast<WPARAM>(codeFont_.get()), FALSE);
  const int buttons = top + 12 + kPreviewHeight + kMargin;
  AddDefaultButton("OK", IDOK, {kWidth - kMargin - 104, buttons, 50, kButtonHeight});
  AddButton("Cancel", IDCANCEL, {kWidth - kMargin - 50, buttons, 50, kButtonHeight});
  SizeAndCentre({Across(kWidth), Down(top + kBelowRows)});
  ShowPreview();
  SetFocus(FieldAt(0));
  SendMessageA(FieldAt(0), EM_SETSEL, 0, -1);
  PaintCaption();
}

void frmFields::AddFields() {
  const int left = Across(kMargin + kLabelWidth + 4);
  // As wide as the preview below, or up to the scroll bar.
  const int right = std::min(Across(kWidth - kMargin), ClientSize(rows_.hWnd()).width - Across(2));
  for (int i = 0; i < count_; ++i) {
    const CodeField& field = (*fields_)[static_cast<std::size_t>(i)];
    const int top = i * Down(kRowHeight);
    const bool choice = field.choices.size() > 1;
    const auto add = [&](const char* className, const std::string& text, DWORD style, int id, DWORD exStyle,
                         const Rect& place) {
      return CreateControl(rows_.hWnd(), className, text.c_str(), WS_VISIBLE | style, exStyle, id, font(),
                           place);
    };
    add("STATIC", field.name, SS_LEFT | SS_ENDELLIPSIS, -1, 0,
        {Across(kMargin), top + Down(2), Across(kLabelWidth), Down(9)});
    const Rect place{left, top, right - left, Down(choice ? 90 : 13)};
    const int id = kFirstFieldId + i;
    if (!choice) {
      add("EDIT", DefaultOf(field), WS_TABSTOP | ES_AUTOHSCROLL, id, WS_EX_CLIENTEDGE, place);
      continue;
    }
    const HWND list =
        add("COMBOBOX", "", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL, id, 0, place);
    for (const std::string& text : field.choices)
      SendMessageA(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
    SendMessageA(list, CB_SETCURSEL, 0, 0);
  }
}

void frmFields::OnCommand(int id, int notification) {
  const bool field = id >= kFirstFieldId && id < kFirstFieldId + count_;
  const HWND control = FieldAt(id - kFirstFieldId);
  const auto chosen = static_cast<int>(
      field && notification == CBN_SELCHANGE ? SendMessageA(control, CB_GETCURSEL, 0, 0) : CB_ERR);
  // The control puts the chosen text into its field only after this notification.
  if (chosen >= 0) SetWindowTextA(control, ComboBoxText(control, chosen).c_str());
  if (field &&
      (notification == EN_CHANGE || notification == CBN_EDITCHANGE || notification == CBN_SELCHANGE)) {
    ReadFields();
    ShowPreview();
  }
  // Windows does that itself; Wine 8 leaves the text selected in every list that had the focus.
  if (field && notification == CBN_KILLFOCUS) SendMessageA(control, CB_SETEDITSEL, 0, MAKELPARAM(-1, 0));
  if (notification != BN_CLICKED) return;
  if (id == IDOK) {
    ReadFields();
    End(IDOK);
  }
  if (id == IDCANCEL) End(IDCANCEL);
}

void frmFields::ReadFields() {
  for (int i = 0; i < count_; ++i) {
    if (const auto text = FieldText(FieldAt(i))) texts_[(*fields_)[static_cast<std::size_t>(i)].name] = *text;
  }
}

void frmFields::ShowPreview() {
  const std::string before = std::exchange(shown_, (*preview_)(texts_));
  if (before == shown_) return;
  const auto changed = std::mismatch(before.begin(), before.end(), shown_.begin(), shown_.end()).first;
  const auto at = static_cast<LPARAM>(changed - before.begin());
  SetDlgItemTextA(hWnd(), kPreviewId, shown_.c_str());
  SendDlgItemMessageA(hWnd(), kPreviewId, EM_SETSEL, static_cast<WPARAM>(at), at);
  SendDlgItemMessageA(hWnd(), kPreviewId, EM_SCROLLCARET, 0, 0);
}

}  // namespace snip
