#include "ui/dialogs/frmFields.h"

#include <algorithm>

#include "platform/Fonts.h"
#include "platform/Win32Text.h"

namespace snip {
namespace {

constexpr std::size_t kMostInOneDialog = 10;

// In dialog units.
constexpr int kMargin = 7;
constexpr int kWidth = 280;
constexpr int kLabelWidth = 80;
constexpr int kRowHeight = 17;
constexpr int kPreviewHeight = 96;

const std::string& DefaultOf(const CodeField& field) {
  return field.choices.empty() ? field.name : field.choices.front();
}

}  // namespace

std::optional<frmFields::Texts> frmFields::ShowMe(HWND owner, const std::vector<CodeField>& fields,
                                                  const Preview& preview) {
  fields_ = &fields;
  preview_ = &preview;
  for (const CodeField& field : fields) texts_[field.name] = DefaultOf(field);
  for (first_ = 0; first_ < fields.size(); first_ += count_) {
    count_ = std::min(kMostInOneDialog, fields.size() - first_);
    if (ShowModal(owner, WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME) != IDOK) return std::nullopt;
  }
  return texts_;
}

void frmFields::OnInit() {
  UseFont(MessageFont());
  codeFont_ = FontOfSize(codeFontProperty_.Name, codeFontProperty_.Size);
  std::string title = "Fill In Fields";
  if (count_ < fields_->size()) {
    title += " (" + std::to_string(first_ + 1) + " to " + std::to_string(first_ + count_) + " of " +
             std::to_string(fields_->size()) + ")";
  }
  SetWindowTextA(hWnd(), title.c_str());
  const int fieldLeft = kMargin + kLabelWidth + 4;
  int top = kMargin;
  for (std::size_t i = 0; i < count_; ++i, top += kRowHeight) {
    const CodeField& field = (*fields_)[first_ + i];
    const int id = kFirstFieldId + static_cast<int>(i);
    AddLabel(field.name.c_str(), {kMargin, top + 2, kLabelWidth, 9});
    const bool choice = field.choices.size() > 1;
    const Rect place{fieldLeft, top, kWidth - kMargin - fieldLeft, choice ? 90 : 13};
    const HWND control =
        choice
            ? Add("COMBOBOX", "", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL, id, place)
            : Add("EDIT", DefaultOf(field).c_str(), WS_TABSTOP | ES_AUTOHSCROLL, id, place, WS_EX_CLIENTEDGE);
    if (!choice) continue;
    for (const std::string& text : field.choices)
      SendMessageA(control, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
    SendMessageA(control, CB_SETCURSEL, 0, 0);
  }
  AddLabel("Code:", {kMargin, top + 2, kLabelWidth, 9});
  const HWND code =
      Add("EDIT", "",
          WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | ES_AUTOHSCROLL,
          kPreviewId, {kMargin, top + 12, kWidth - 2 * kMargin, kPreviewHeight}, WS_EX_CLIENTEDGE);
  SendMessageA(code, WM_SETFONT, reinterpret_cast<WPARAM>(codeFont_.get()), FALSE);
  top += 12 + kPreviewHeight + kMargin;
  AddDefaultButton("OK", IDOK, {kWidth - kMargin - 104, top, 50, 14});
  AddButton("Cancel", IDCANCEL, {kWidth - kMargin - 50, top, 50, 14});
  SizeAndCentre({Across(kWidth), Down(top + 14 + kMargin)});
  ShowPreview();
  SetFocus(FieldAt(0));
  SendMessageA(FieldAt(0), EM_SETSEL, 0, -1);
  PaintCaption();
}

HWND frmFields::FieldAt(std::size_t index) const {
  return GetDlgItem(hWnd(), kFirstFieldId + static_cast<int>(index));
}

void frmFields::OnCommand(int id, int notification) {
  const bool field = id >= kFirstFieldId && id < kFirstFieldId + static_cast<int>(count_);
  if (field && notification == CBN_SELCHANGE &&
      SendMessageA(GetDlgItem(hWnd(), id), CB_GETCURSEL, 0, 0) >= 0) {
    // The control takes the chosen text into its field only after this.
    const auto index = static_cast<int>(SendMessageA(GetDlgItem(hWnd(), id), CB_GETCURSEL, 0, 0));
    SetDlgItemTextA(hWnd(), id, ComboBoxText(GetDlgItem(hWnd(), id), index).c_str());
  }
  if (field &&
      (notification == EN_CHANGE || notification == CBN_EDITCHANGE || notification == CBN_SELCHANGE)) {
    ReadFields();
    ShowPreview();
  }
  if (notification != BN_CLICKED) return;
  if (id == IDOK) {
    ReadFields();
    End(IDOK);
  }
  if (id == IDCANCEL) End(IDCANCEL);
}

void frmFields::ReadFields() {
  for (std::size_t i = 0; i < count_; ++i) {
    if (const auto text = FieldText(FieldAt(i))) texts_[(*fields_)[first_ + i].name] = *text;
  }
}

void frmFields::ShowPreview() {
  SetDlgItemTextA(hWnd(), kPreviewId, (*preview_)(texts_).c_str());
}

}  // namespace snip
