#include "ui/main/LibraryChooser.h"

#include <commdlg.h>

#include <algorithm>
#include <utility>

#include "platform/Fonts.h"
#include "platform/Win32Text.h"
#include "platform/Window.h"
#include "ui/dialogs/CommonDialog.h"
#include "ui/dialogs/frmNew.h"

namespace snip {

void LibraryChooser::Create(HWND parent, int id, int nameId, HFONT font) {
  txtFileName_ = nullptr;
  nameId_ = nameId;
  NameNextControl(parent, "Library");
  cboFiles_ =
      CreateControl(parent, "COMBOBOX", "",
                    WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_CLIPSIBLINGS | CBS_DROPDOWNLIST, 0, id, font);
}

void LibraryChooser::MakeFileNameBox() {
  const HWND window = GetParent(cboFiles_);
  NameNextControl(window, "Library name");
  txtFileName_ = CreateControl(window, "EDIT", "", WS_CLIPSIBLINGS | ES_AUTOHSCROLL, 0, nameId_,
                               FontOf(cboFiles_), boxPlace_);
  SendMessageA(txtFileName_, EM_SETLIMITTEXT, MAX_PATH, 0);
  fileName_.Attach(txtFileName_);
  PlaceWithLabel(txtFileName_, HWND_TOP);
}

void LibraryChooser::Place(const Places& places) {
  constexpr int openListHeight = 300;  // the closed field's height follows the font
  const int height = PlaceInParent(cboFiles_).height;
  const int top = (places.bar.height - height) / 2;
  const int width = places.bar.width - places.left - places.rightMargin;
  if (width <= places.boxNarrower) return;  // no room: the last place stays
  MoveTo(cboFiles_, {places.left, top, width, openListHeight});
  // Inside the field's border, which is as thick above as at the left.
  const int inset = std::min(places.boxInset, height / 5);
  boxPlace_ = {places.left + places.boxInset, top + inset, width - places.boxNarrower, height - 2 * inset};
  if (txtFileName_ != nullptr) MoveTo(txtFileName_, boxPlace_);
}

bool LibraryChooser::ListIsOpen() const {
  return Send(CB_GETDROPPEDSTATE) != 0;
}

void LibraryChooser::CloseList() const {
  Send(CB_SHOWDROPDOWN, FALSE);
}

bool LibraryChooser::Chooses(int notification) {
  switch (notification) {
    case CBN_DROPDOWN:
      openedAt_ = SelectedFile();
      return false;
    case CBN_SELCHANGE:
      passing_ = ListIsOpen();
      return !passing_;
    case CBN_SELENDCANCEL:
      if (std::exchange(passing_, false)) SelectFile(openedAt_);
      return false;
    case CBN_CLOSEUP:
      // A click sends CBN_SELCHANGE by itself, before or after this; Enter does not.
      if (passing_) {
        PostMessageA(GetParent(cboFiles_), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(cboFiles_), kTaken),
                     reinterpret_cast<LPARAM>(cboFiles_));
      }
      return false;
    case kTaken:
      return std::exchange(passing_, false);
    default:
      return false;
  }
}

void LibraryChooser::InsertFile(int entry, const std::string& text) {
  const int selected = SelectedFile();
  Send(CB_INSERTSTRING, static_cast<WPARAM>(entry), reinterpret_cast<LPARAM>(text.c_str()));
  // The control keeps the selected index, which is now that of another entry.
  if (selected >= entry) SelectFile(selected + 1);
}

int LibraryChooser::FileCount() const {
  return static_cast<int>(Send(CB_GETCOUNT));
}

std::string LibraryChooser::FileText(int entry) const {
  return ComboBoxText(cboFiles_, entry);
}

int LibraryChooser::SelectedFile() const {
  return static_cast<int>(Send(CB_GETCURSEL));
}

void LibraryChooser::SelectFile(int entry) {
  Send(CB_SETCURSEL, static_cast<WPARAM>(entry));
}

void LibraryChooser::ReplaceFile(int entry, const std::string& text) {
  const int selected = SelectedFile();
  Send(CB_DELETESTRING, static_cast<WPARAM>(entry));
  InsertFile(entry, text);
  SelectFile(selected);
}

std::optional<std::string> LibraryChooser::FileNameText() const {
  // What a hidden box holds was given up, and is no name to rename the library to.
  if (IsWindowVisible(txtFileName_) == 0) return std::nullopt;
  return fileName_.Text();
}

void LibraryChooser::SetFileNameText(const std::string& text) {
  fileName_.SetText(text);
}

void LibraryChooser::SelectFileNameText() {
  SendMessageA(txtFileName_, EM_SETSEL, 0, -1);
}

void LibraryChooser::ShowFileNameBox(const std::string& text) {
  if (txtFileName_ == nullptr) MakeFileNameBox();
  SetFileNameText(text);
  if (GetFocus() != txtFileName_) focusBefore_ = GetFocus();
  ShowWindow(txtFileName_, SW_SHOW);
  SetFocus(txtFileName_);
  SelectFileNameText();
}

void LibraryChooser::HideFileNameBox() {
  if (txtFileName_ == nullptr) return;
  const bool focused = GetFocus() == txtFileName_;
  ShowWindow(txtFileName_, SW_HIDE);
  // Not to the chooser, where the next arrow key would open another library. If the previous control is gone,
  // the main window finds one.
  if (focused)
    SetFocus(IsChild(GetParent(txtFileName_), focusBefore_) ? focusBefore_ : GetParent(txtFileName_));
}

std::optional<std::string> LibraryChooser::ChooseLibraryFile() {
  CommonDialog dialog;
  dialog.hWnd = GetAncestor(cboFiles_, GA_ROOT);
  dialog.DialogTitle = "Open Snippet File";
  dialog.Filter = "Snipstore Snippets|*.bns";
  dialog.Flags = OFN_HIDEREADONLY | OFN_FILEMUSTEXIST | OFN_NOCHANGEDIR;
  dialog.ShowOpen();
  return dialog.FileName.empty() ? std::nullopt : std::optional(dialog.FileName);
}

std::string LibraryChooser::AskForLibraryName(const std::string& name) {
  return frmNew(caption_).ShowMe(GetAncestor(cboFiles_, GA_ROOT), name);
}

}  // namespace snip
