#include "ui/main/LibraryChooser.h"

#include <commdlg.h>

#include <array>

#include "platform/Window.h"

namespace snip {

void LibraryChooser::Create(HWND parent, int id, int nameId, HFONT font) {
  // The height is that of the opened list; the field's own follows the font.
  constexpr Rect openList{0, 0, 100, 300};
  cboFiles_ = CreateControl(parent, "COMBOBOX", "", WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST,
                            0, id, font, openList);
  txtFileName_ = CreateControl(parent, "EDIT", "", WS_BORDER | ES_AUTOHSCROLL, 0, nameId, font);
}

void LibraryChooser::InsertFile(int entry, const std::string& text) {
  Send(CB_INSERTSTRING, static_cast<WPARAM>(entry), reinterpret_cast<LPARAM>(text.c_str()));
}

int LibraryChooser::FileCount() const {
  return static_cast<int>(Send(CB_GETCOUNT));
}

std::string LibraryChooser::FileText(int entry) const {
  const LRESULT length = Send(CB_GETLBTEXTLEN, static_cast<WPARAM>(entry));
  if (length < 0) return {};
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  Send(CB_GETLBTEXT, static_cast<WPARAM>(entry), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

int LibraryChooser::SelectedFile() const {
  return static_cast<int>(Send(CB_GETCURSEL));
}

void LibraryChooser::SelectFile(int entry) {
  Send(CB_SETCURSEL, static_cast<WPARAM>(entry));
}

void LibraryChooser::SetFileNameText(const std::string& text) {
  SetWindowTextA(txtFileName_, text.c_str());
}

std::optional<std::string> LibraryChooser::ChooseLibraryFile() {
  std::array<char, 1024> path{};
  OPENFILENAMEA dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = GetAncestor(cboFiles_, GA_ROOT);
  dialog.lpstrFilter = "Snipstore Snippets\0*.bns\0";
  dialog.lpstrFile = path.data();
  dialog.nMaxFile = static_cast<DWORD>(path.size());
  dialog.lpstrTitle = "Open Snippet File";
  dialog.Flags = OFN_HIDEREADONLY | OFN_FILEMUSTEXIST | OFN_NOCHANGEDIR;
  if (GetOpenFileNameA(&dialog) == 0) return std::nullopt;
  return path.data();
}

}  // namespace snip
