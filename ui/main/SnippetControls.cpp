#include "ui/main/SnippetControls.h"

#include <algorithm>
#include <utility>

#include "platform/FlagScope.h"
#include "platform/Fonts.h"
#include "platform/Rects.h"
#include "platform/ScreenTwips.h"
#include "platform/Win32Text.h"
#include "platform/Window.h"
#include "ui/commandbar/PropertyFont.h"
#include "ui/dialogs/SettingsChoices.h"

namespace snip {
namespace {

/// A description with a longer line is shown unwrapped, because the time that an edit control takes to wrap
/// grows with the square of the line's length: seconds for 100,000 characters.
constexpr std::size_t kLongestWrappedLine = 5000;

std::size_t LongestLine(const std::string& text) {
  std::size_t longest = 0;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    longest = std::max(longest, end - start);
    start = end + 1;
  }
  return longest;
}

}  // namespace

SnippetControls::SnippetControls(BnRichEdit::Events codeEvents, MainToolbars& toolbars,
                                 const LibraryChooser& chooser)
    : toolbars_(toolbars), chooser_(chooser), txtCode_(std::move(codeEvents)), twips_(ScreenTwips()) {}

void SnippetControls::Create(HWND window, const Ids& ids, HFONT listFont) {
  editMode_.reset();
  TakeFont(MakeFont(font_, twips_));
  txtName_ = nullptr;
  nameBoxId_ = ids.txtName;
  NameNextControl(window, "Snippets");
  // The window text of a list is not shown; it names the list for screen readers that ignore labels.
  lstCode_ = CreateControl(
      window, "LISTBOX", "Snippets",
      WS_VISIBLE | WS_CLIPSIBLINGS | WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
      WS_EX_CLIENTEDGE, ids.lstCode, listFont);
  NameNextControl(window, "Description");
  MakeDescription(window, ids.txtDesc, fontHandle_.get());
  txtCode_.CreateIn(window, ids.txtCode, font_);
}

/// Over the list and the controls beside it, because it may become wider than the list.
void SnippetControls::MakeNameBox() {
  const HWND window = GetParent(lstCode_);
  NameNextControl(window, "Snippet name");
  txtName_ = CreateControl(window, "EDIT", "", WS_BORDER | WS_CLIPSIBLINGS | ES_AUTOHSCROLL, 0, nameBoxId_,
                           FontOf(lstCode_));
  SendMessageA(txtName_, EM_SETLIMITTEXT, 0, 0);
  name_.Attach(txtName_);
  PlaceWithLabel(txtName_, chooser_.cboFiles());  // Tab goes from it to the list
}

void SnippetControls::MakeDescription(HWND parent, int id, HFONT font) {
  txtDesc_ = CreateControl(parent, "EDIT", "",
                           WS_VISIBLE | WS_CLIPSIBLINGS | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE |
                               ES_AUTOVSCROLL | ES_WANTRETURN | (descriptionWraps_ ? 0 : ES_AUTOHSCROLL),
                           WS_EX_CLIENTEDGE, id, font);
  SendMessageA(txtDesc_, EM_SETLIMITTEXT, 0, 0);
  LockDescription();
  description_.Attach(txtDesc_);
}

void SnippetControls::SetFont(const FontProperty& font) {
  FontProperty wanted = font;
  if (wanted.Name.empty()) wanted.Name = font_.Name;
  if (!IsFontSize(wanted.Size)) wanted.Size = font_.Size;
  if (wanted == font_) return;
  font_ = wanted;
  UniqueFont handle = MakeFont(font_, twips_);
  txtCode_.SetFont(font_);
  SendMessageA(txtDesc_, WM_SETFONT, reinterpret_cast<WPARAM>(handle.get()), TRUE);
  TakeFont(std::move(handle));  // the controls do not use the old one any more
  FitDescriptionBar();
}

void SnippetControls::TakeFont(UniqueFont font) {
  fontHandle_ = std::move(font);
  lineHeight_ = TextSize(fontHandle_.get(), "M").height;
}

void SnippetControls::txtName_Change() const {
  const HWND window = GetParent(txtName_);
  RECT inside{};
  SendMessageA(txtName_, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&inside));
  Rect place = PlaceInParent(txtName_);
  const int around = place.width - ToRect(inside).width;
  // "M" leaves room for the next letter.
  const Size text = TextSize(FontOf(txtName_), WindowText(txtName_) + "M");
  const int most = ClientSize(window).width - place.left;
  const int wanted = std::min(text.width + around, most);
  if (wanted <= place.width) return;
  place.width = wanted;
  MoveTo(txtName_, place);
  // Text that was scrolled out of the narrower box comes back only if the caret moves there.
  DWORD begin = 0;
  DWORD end = 0;
  SendMessageA(txtName_, EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
  SendMessageA(txtName_, EM_SETSEL, 0, 0);
  SendMessageA(txtName_, EM_SETSEL, begin, static_cast<LPARAM>(end));
}

void SnippetControls::FitDescriptionBar() const {
  RECT inside{};
  SendMessageA(txtDesc_, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&inside));
  const auto lines = static_cast<int>(SendMessageA(txtDesc_, EM_GETLINECOUNT, 0, 0));
  const bool needed = lines * lineHeight_ > ToRect(inside).height;
  const bool shown = (GetWindowLongA(txtDesc_, GWL_STYLE) & WS_VSCROLL) != 0;
  // A text that fits only without the bar keeps the state that it finds, so this does not go to and fro. A
  // bar that is only disabled would be drawn for each snippet: a quarter of the time of a walk through the
  // list.
  if (needed == shown) return;
  ShowScrollBar(txtDesc_, SB_VERT, needed ? TRUE : FALSE);
  // The lines have wrapped anew, perhaps so that the one that is typed in is out of sight.
  if (GetFocus() == txtDesc_) SendMessageA(txtDesc_, EM_SCROLLCARET, 0, 0);
}

void SnippetControls::txtDesc_LostFocus() const {
  SendMessageA(txtDesc_, EM_SETSEL, 0, 0);
  SendMessageA(txtDesc_, EM_SCROLLCARET, 0, 0);
}

void SnippetControls::FillRows(std::span<const Snippet> snippets) {
  rows_.Fill(lstCode_, snippets);
}

void SnippetControls::InsertRow(int row, const std::string& name) {
  List(LB_INSERTSTRING, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(name.c_str()));
}

void SnippetControls::RemoveRow(int row) {
  List(LB_DELETESTRING, static_cast<WPARAM>(row));
  LockDescription();
}

void SnippetControls::SetRowText(int row, const std::string& name) {
  // A list box cannot change a row's text: replace the row.
  const int selected = SelectedRow();
  const LRESULT top = List(LB_GETTOPINDEX);
  List(WM_SETREDRAW, FALSE);
  List(LB_DELETESTRING, static_cast<WPARAM>(row));
  List(LB_INSERTSTRING, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(name.c_str()));
  SelectRow(selected);
  List(LB_SETTOPINDEX, static_cast<WPARAM>(top));
  List(WM_SETREDRAW, TRUE);
  InvalidateRect(lstCode_, nullptr, TRUE);
}

int SnippetControls::SelectedRow() const {
  return static_cast<int>(List(LB_GETCURSEL));
}
void SnippetControls::SelectRow(int row) {
  // Selecting a row scrolls to it, although the user may be looking at others.
  if (row != SelectedRow()) List(LB_SETCURSEL, static_cast<WPARAM>(row));
}
std::optional<int> SnippetControls::SelectNextByPrefix(const std::string& prefix) {
  // LB_FINDSTRING starts after the given row.
  const int from = prefix.size() > 1 ? SelectedRow() - 1 : SelectedRow();
  const LRESULT row =
      List(LB_FINDSTRING, static_cast<WPARAM>(std::max(from, -1)), reinterpret_cast<LPARAM>(prefix.c_str()));
  if (row == LB_ERR) return std::nullopt;
  List(LB_SETCURSEL, static_cast<WPARAM>(row));
  return static_cast<int>(row);
}

void SnippetControls::FocusList() {
  SetFocus(lstCode_);
}

std::optional<std::string> SnippetControls::Description() const {
  return description_.Text();
}

void SnippetControls::SetDescription(const std::string& text) {
  const FlagScope setting(settingDescription_);
  const bool wraps = LongestLine(text) < kLongestWrappedLine;
  if (wraps != descriptionWraps_) {
    // An edit control cannot change whether it wraps: replace it.
    descriptionWraps_ = wraps;
    const HWND previous = txtDesc_;
    MakeDescription(GetParent(previous), GetDlgCtrlID(previous), FontOf(previous));
    MoveTo(txtDesc_, PlaceInParent(previous));
    SetWindowPos(txtDesc_, previous, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    if (GetFocus() == previous) SetFocus(txtDesc_);
    DestroyWindow(previous);
  }
  description_.SetText(text);
  FitDescriptionBar();
  LockDescription();
}

/// Makes the description read-only if no snippet is selected: what is typed would belong to none.
void SnippetControls::LockDescription() const {
  const bool locked = editingDisabled_ || SelectedRow() < 0;
  const bool wasLocked = (GetWindowLongA(txtDesc_, GWL_STYLE) & ES_READONLY) != 0;
  if (locked == wasLocked) return;  // Wine 8 repaints all edges for EM_SETREADONLY
  SendMessageA(txtDesc_, EM_SETREADONLY, locked ? TRUE : FALSE, 0);
}

std::optional<std::string> SnippetControls::Code() const {
  return txtCode_.text();
}
void SnippetControls::SetCode(const std::string& text) {
  txtCode_.SetText(text);
}
void SnippetControls::FocusCode() {
  txtCode_.Focus();
}

void SnippetControls::ShowNameBox(int row, const std::string& name) {
  if (txtName_ == nullptr) MakeNameBox();
  nameBoxRow_ = row;
  List(LB_SETCURSEL, static_cast<WPARAM>(row));  // also scrolls it into view
  MoveTo(txtName_, NameBoxPlace());
  name_.SetText(name);
  ShowWindow(txtName_, SW_SHOW);
  FocusNameBox();
}

Rect SnippetControls::NameBoxPlace() const {
  RECT place{};
  List(LB_GETITEMRECT, static_cast<WPARAM>(nameBoxRow_), reinterpret_cast<LPARAM>(&place));
  MapWindowPoints(lstCode_, GetParent(txtName_), reinterpret_cast<POINT*>(&place), 2);
  // Larger by the box's border, which would cover the row's letters otherwise.
  const int border = GetSystemMetrics(SM_CYBORDER);
  const Rect row = ToRect(place);
  return {row.left, row.top - border, row.width, row.height + 2 * border};
}

bool SnippetControls::KeepNameBoxOnRow() const {
  if (IsWindowVisible(txtName_) == 0) return true;
  RECT row{};
  List(LB_GETITEMRECT, static_cast<WPARAM>(nameBoxRow_), reinterpret_cast<LPARAM>(&row));
  if (row.bottom <= 0 || row.top >= ClientSize(lstCode_).height) return false;
  const Rect wanted = NameBoxPlace();
  const Rect place = PlaceInParent(txtName_);
  if (place.left != wanted.left || place.top != wanted.top) {
    MoveTo(txtName_, wanted);
    txtName_Change();
  }
  return true;
}

void SnippetControls::BringNameBoxBack() const {
  if (KeepNameBoxOnRow()) return;
  List(LB_SETTOPINDEX, static_cast<WPARAM>(nameBoxRow_));
  KeepNameBoxOnRow();
}

std::optional<std::string> SnippetControls::NameBoxText() const {
  return name_.Text();
}

void SnippetControls::FocusNameBox() {
  BringNameBoxBack();  // it may be out of sight when its name is refused
  SetFocus(txtName_);
  SendMessageA(txtName_, EM_SETSEL, 0, -1);
}

void SnippetControls::HideNameBox() {
  if (txtName_ == nullptr) return;
  if (GetFocus() == txtName_) FocusList();
  ShowWindow(txtName_, SW_HIDE);
}

void SnippetControls::SetEditingDisabled(bool disabled) {
  editingDisabled_ = disabled;
  LockDescription();
  toolbars_.SetEditingDisabled(disabled);
}

void SnippetControls::SetEditMode(bool editing) {
  if (editMode_ == editing) return;  // called for each snippet that is shown
  editMode_ = editing;
  txtCode_.SetLocked(!editing);
  // During an edit Tab is typed into the code.
  SetTabStop(lstCode_, !editing);
  SetTabStop(txtDesc_, !editing);
  SetTabStop(chooser_.cboFiles(), !editing);
  toolbars_.SetEditMode(editing);
}

void SnippetControls::SetWaitCursor(bool waiting) {
  SetCursor(waiting ? waitCursor_ : arrowCursor_);
}

}  // namespace snip
