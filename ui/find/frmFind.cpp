#include "ui/find/frmFind.h"

#include <windowsx.h>

#include <algorithm>

#include "platform/Dialog.h"
#include "platform/Fonts.h"
#include "platform/Rects.h"
#include "platform/Win32Text.h"
#include "resources/resource.h"
#include "ui/find/PalettePlace.h"
#include "ui/find/SystemFolding.h"
#include "ui/find/frmFindKey.h"

namespace snip {
namespace {

/// The reading thread has read a library.
constexpr UINT kLibraryRead = WM_APP + 1;
/// The palette is to refresh its libraries.
constexpr UINT kRefresh = WM_APP + 2;

constexpr UINT_PTR kPreviewTimer = 1;
constexpr UINT kPreviewDelayMs = 30;  // so that a held arrow key does not show the code of every row
constexpr UINT kForgetDelayMs = 30000;

constexpr const char* kKeys =
    "Enter: go to   Ctrl+Enter: output   Ctrl+C: copy   F3: next   Ctrl+G: tags   Esc: close";

UniqueMenu MakeMenu() {
  using Item = frmFind::Item;
  UniqueMenu bar(CreateMenu());
  UniqueMenu snippet(CreatePopupMenu());
  AppendMenuA(snippet.get(), MF_STRING, Item::kGo, "&Go To\tEnter");
  AppendMenuA(snippet.get(), MF_STRING, Item::kOutput, "&Output\tCtrl+Enter");
  AppendMenuA(snippet.get(), MF_STRING, Item::kCopy, "&Copy\tCtrl+C");
  AppendMenuA(snippet.get(), MF_SEPARATOR, 0, nullptr);
  AppendMenuA(snippet.get(), MF_STRING, Item::kTags, "&Tags\tCtrl+G");
  AppendMenuA(snippet.get(), MF_STRING, Item::kSystemKey, "System-wide &Key...");
  AppendMenuA(snippet.get(), MF_SEPARATOR, 0, nullptr);
  AppendMenuA(snippet.get(), MF_STRING, Item::kClose, "C&lose\tEsc");
  const auto popup = reinterpret_cast<UINT_PTR>(snippet.Release());  // the menu bar destroys it
  AppendMenuA(bar.get(), MF_POPUP, popup, "&Snippet");
  return bar;
}

/// Whether the user has selected a part of the field's text. All of it is selected by the palette itself.
bool HasPartSelected(HWND field) {
  DWORD start = 0;
  DWORD end = 0;
  SendMessageA(field, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  return start != end && end - start < static_cast<DWORD>(GetWindowTextLengthA(field));
}

}  // namespace

frmFind::frmFind(const Services& services)
    : services_(services),
      folding_(SystemFolding()),
      rows_(folding_),
      libraries_(services.store, folding_),
      walk_(services.target, rows_.finder()),
      list_(rows_, {.selected =
                        [this] {
                          chosen_ = true;
                          SetTimer(hWnd(), kPreviewTimer, kPreviewDelayMs, nullptr);
                        },
                    .activated = [this] { Activate(); }}) {}

frmFind::~frmFind() {
  Destroy();
}

// --- Window -----------------------------------------------------------------------------------------------

void frmFind::ShowMe(HWND owner, const std::string& text, bool codeFirst) {
  if (hWnd() == nullptr) {
    font_ = MessageFont();
    const bool made = Create({.className = "frmFind",
                              .title = "Find Snippets",
                              .style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_CLIPCHILDREN,
                              .exStyle = WS_EX_CONTROLPARENT,
                              .place = StoredPalettePlace(services_.settings, owner),
                              .parent = owner,
                              .menu = MakeMenu(),
                              .iconId = IDI_SNIPSTORE});
    if (!made) return;
  }
  codeFirst_ = codeFirst;
  told_.clear();
  current_ = false;
  if (!text.empty()) SetWindowTextA(field_, text.c_str());
  Refresh();
  Search();
  ShowWindow(hWnd(), SW_SHOW);
  SetForegroundWindow(hWnd());
  SetFocus(field_);
  SendMessageA(field_, EM_SETSEL, 0, -1);
  UpdateWindow(list_.hWnd());
  ReadLibraries();
}

void frmFind::MakeControls() {
  NameNextControl(hWnd(), "Search for");
  field_ = CreateControl(hWnd(), "EDIT", "", WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE,
                         kFieldId, font_.get());
  list_.CreateIn(hWnd(), kListId, font_.get());
  status_ = CreateControl(hWnd(), "STATIC", "", WS_VISIBLE | SS_NOPREFIX | SS_ENDELLIPSIS, 0, kStatusId,
                          font_.get());
  keys_ = CreateControl(hWnd(), "STATIC", kKeys, WS_VISIBLE | SS_NOPREFIX | SS_ENDELLIPSIS, 0, kKeysId,
                        font_.get());
}

void frmFind::Layout() {
  const Size size = ClientSize(hWnd());
  const Size letter = CharacterSize(font_.get());
  const int margin = letter.width;
  const int line = letter.height * 5 / 4;
  const int width = std::max(0, size.width - 2 * margin);
  const int fieldHeight = letter.height * 9 / 8 + 2 * GetSystemMetrics(SM_CYEDGE) + 2;
  int top = margin;
  MoveTo(field_, {margin, top, width, fieldHeight});
  top += fieldHeight + margin / 2;
  const int foot = size.height - 2 * line - margin / 2;
  const int rest = std::max(0, foot - margin / 2 - top);
  // A low window shows only the list, because a line or two of code would be of no use.
  const bool showsCode = rest >= 10 * line;
  const int listHeight = showsCode ? rest * 11 / 20 : rest;
  MoveTo(list_.hWnd(), {margin, top, width, listHeight});
  if (preview_.hWnd() != nullptr) {
    MoveTo(preview_.hWnd(),
           {margin, top + listHeight + margin / 2, width, std::max(0, rest - listHeight - margin / 2)});
    ShowWindow(preview_.hWnd(), showsCode ? SW_SHOWNA : SW_HIDE);
  }
  MoveTo(status_, {margin, foot, width, line});
  MoveTo(keys_, {margin, foot + line, width, line});
}

void frmFind::SavePlace() const {
  RECT window{};
  if (GetWindowRect(hWnd(), &window) != 0) StorePalettePlace(services_.settings, ToRect(window));
}

void frmFind::CloseMe() {
  if (IsWindowVisible(hWnd()) == 0) return;
  SavePlace();
  KillTimer(hWnd(), kPreviewTimer);
  ShowWindow(hWnd(), SW_HIDE);
  // Hidden until the list has been painted again: painting its scroll bars takes 120 requests to Wine's
  // server.
  ShowWindow(preview_.hWnd(), SW_HIDE);
}

/// Closes the palette and returns to where the user came from.
void frmFind::Leave() {
  // This comes first, because hiding the foreground window would activate its owner.
  services_.target.RestoreForeground();
  CloseMe();
}

void frmFind::Forget() {
  KillTimer(hWnd(), kForgetTimer);
  if (IsWindowVisible(hWnd()) != 0) return;
  ForgetLibraries();
  preview_.Clear();
  list_.TakeRows(-1);
}

// --- Libraries --------------------------------------------------------------------------------------------

void frmFind::Refresh() {
  current_ = true;
  FindTarget& target = services_.target;
  libraries_.Refresh(target.OpenLibrary(), target.OtherLibraries());
  rows_.finder().SetLibraries(libraries_.Searchable());
}

/// Called after the list is painted, so that the user does not wait for the reading.
void frmFind::ReadLibraries() {
  libraries_.Read([window = hWnd()] { PostMessageA(window, kLibraryRead, 0, 0); });
}

void frmFind::TakeResults() {
  if (libraries_.TakeResults()) {
    SearchAgain([this] { rows_.finder().SetLibraries(libraries_.Searchable()); });
  } else {
    ShowStatus();
  }
}

void frmFind::ForgetLibraries() {
  libraries_.Forget();
  rows_.finder().SetLibraries({});
}

// --- Searching --------------------------------------------------------------------------------------------

void frmFind::SearchRows() {
  rows_.Search(WindowText(field_), codeFirst_ ? services_.target.ShownCode() : std::nullopt);
}

void frmFind::Search() {
  SearchRows();
  ShowRows();
}

/// Searches again after `change` has changed the libraries, and keeps the row that the user has selected.
void frmFind::SearchAgain(const std::function<void()>& change) {
  const auto selected = chosen_ ? std::optional(rows_.IdentityOf(list_.selected())) : std::nullopt;
  const bool tags = rows_.listsTags();
  change();
  SearchRows();
  if (tags) rows_.ListTags();
  ShowRows(selected);
}

void frmFind::ShowRows(const std::optional<RowIdentity>& selected) {
  const int row = selected ? rows_.RowOf(*selected) : -1;
  chosen_ = row >= 0;
  list_.TakeRows(chosen_ ? row : rows_.First(), chosen_);
  if (rows_.listsTags() && rows_.count() == 0) told_ = "No description has a word with # before it.";
  ShowStatus();
  SetTimer(hWnd(), kPreviewTimer, kPreviewDelayMs, nullptr);
}

void frmFind::SetText(const std::string& text) {
  SetWindowTextA(field_, text.c_str());
  SendMessageA(field_, EM_SETSEL, text.size(), static_cast<LPARAM>(text.size()));
}

void frmFind::ShowTags() {
  told_.clear();
  rows_.ListTags();
  ShowRows();
}

void frmFind::Tell(const std::string& text) {
  told_ = text;
  ShowStatus();
}

void frmFind::ShowStatus() {
  std::string text = told_;
  if (text.empty()) {
    const std::size_t count =
        rows_.listsTags() ? static_cast<std::size_t>(rows_.count()) : rows_.finder().found().size();
    text = std::to_string(count) + (rows_.listsTags() ? " tag" : " snippet") + (count == 1 ? "" : "s");
  }
  if (const std::size_t unread = libraries_.unread(); unread > 0)
    text += ", reading " + std::to_string(unread) + (unread == 1 ? " library" : " libraries");
  if (const std::string names = libraries_.Unreadable(); !names.empty())
    text += " - cannot be read: " + names;
  if (WindowText(status_) != text) SetWindowTextA(status_, text.c_str());
}

/// The snippet of the selected row. For a place in the shown code that is the shown snippet.
std::optional<Found> frmFind::Selected() const {
  const int row = list_.selected();
  if (!rows_.PlaceAt(row)) return rows_.FoundAt(row);
  const Found shown{.library = 0, .snippet = services_.target.ShownSnippet().value_or(UINT32_MAX)};
  return rows_.finder().Has(shown) ? std::optional(shown) : std::nullopt;  // the open library is the first
}

void frmFind::ShowPreview() {
  KillTimer(hWnd(), kPreviewTimer);
  if (IsWindowVisible(hWnd()) == 0) return;  // a library was read after the palette was closed
  const FontProperty font = services_.target.CodeFont();
  const bool inSight = IsWindowVisible(preview_.hWnd()) != 0;
  // Made only now so that the list appears sooner: that saves it a quarter of its requests to Wine's server.
  if (preview_.hWnd() == nullptr) preview_.CreateIn(hWnd(), kPreviewId, list_.hWnd(), font);
  if (!inSight) Layout();
  preview_.SetLook(font, services_.target.ColoursCode());
  const auto place = rows_.PlaceAt(list_.selected());
  const auto found = Selected();
  std::string code = place ? rows_.code() : std::string();
  if (found && !place) code = rows_.finder().SnippetOf(*found).Code;
  preview_.Show(code, rows_.finder().PlacesInCode(code), place);
}

// --- What is done with a row ------------------------------------------------------------------------------

void frmFind::Activate() {
  const int row = list_.selected();
  if (const std::string tag = rows_.TagAt(row); !tag.empty()) {
    SetText("#" + tag + " ");
    SetFocus(field_);
    return;
  }
  if (const auto place = rows_.PlaceAt(row)) {
    walk_.BeginInCode();
    CloseMe();
    services_.target.SelectInCode(*place);
    return;
  }
  const auto selected = rows_.FoundAt(row);
  if (!selected) return MessageBeep(MB_OK), void();
  walk_.BeginAt(*selected);
  rows_.finder().Use(*selected);
  CloseMe();
  if (walk_.Go() == Went::Missing) TellMissing();
}

/// Shows the palette with the message that the snippet to go to is missing.
void frmFind::TellMissing() {
  const HWND owner = GetWindow(hWnd(), GW_OWNER);
  if (owner == nullptr || hWnd() == nullptr) return;
  const FindDestination& missing = walk_.current();
  const std::string problem = "\"" + missing.name + "\" is no longer in " + missing.library.name + ".";
  ShowMe(owner, "", false);
  Tell(problem);
}

bool frmFind::GoOn(bool forward) {
  const std::optional<Went> went = walk_.GoOn(forward);
  if (went == Went::Nowhere) MessageBeep(MB_OK);
  if (went == Went::Missing) TellMissing();
  return went.has_value();
}

void frmFind::Output() {
  const auto found = Selected();
  if (!found) return MessageBeep(MB_OK), void();
  const SearchedLibraryPtr library =
      rows_.finder().libraries()[found->library];  // kept alive while it is delivered
  rows_.finder().Use(*found);
  Leave();
  services_.target.Output(*library, found->snippet);
}

void frmFind::Copy() {
  const auto found = Selected();
  if (!found) return MessageBeep(MB_OK), void();
  rows_.finder().Use(*found);
  const SearchedSnippet snippet = rows_.finder().SnippetOf(*found);
  const std::string told = "Copied the code of \"" + std::string(snippet.Name) + "\".";
  if (services_.target.Copy(std::string(snippet.Code))) Tell(told);
}

void frmFind::ChooseSystemKey() {
  FindTarget& target = services_.target;
  frmFindKey(services_.caption, [&target](HotKey key) {
    return target.UseSystemKey(key);
  }).ShowMe(hWnd(), target.SystemKey());
}

void frmFind::Escape() {
  if (rows_.listsTags()) {
    told_.clear();
    return Search();
  }
  if (GetWindowTextLengthA(field_) == 0) return Leave();
  SetText("");
  SetFocus(field_);
}

// --- Messages ---------------------------------------------------------------------------------------------

bool frmFind::PreTranslate(MSG& message) {
  if (hWnd() == nullptr || (message.hwnd != hWnd() && IsChild(hWnd(), message.hwnd) == 0)) return false;
  if (message.message == WM_KEYDOWN &&
      OnKey(message.wParam, GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0,
            GetKeyState(VK_SHIFT) < 0))
    return true;
  if (message.message == WM_MOUSEWHEEL && message.hwnd == field_) {
    SendMessageA(list_.hWnd(), message.message, message.wParam, message.lParam);
    return true;
  }
  return IsDialogMessageA(hWnd(), &message) != 0;
}

bool frmFind::OnKey(WPARAM key, bool control, bool shift) {
  const HWND focus = GetFocus();
  switch (key) {
    case VK_RETURN:
      control ? Output() : Activate();
      return true;
    case VK_ESCAPE:
      Escape();
      return true;
    case VK_F3:
      list_.MoveByKey(shift ? VK_UP : VK_DOWN);
      return true;
    case 'G':
      if (control) ShowTags();
      return control;
    case 'F':
      if (!control) return false;
      SetFocus(field_);
      SendMessageA(field_, EM_SETSEL, 0, -1);
      return true;
    case 'A':
      if (!control || focus != field_) return false;
      SendMessageA(field_, EM_SETSEL, 0, -1);
      return true;
    case 'C':
      if (!control || (focus == field_ && HasPartSelected(field_)) || preview_.HasSelection()) return false;
      Copy();
      return true;
    default:
      return focus == field_ && !control && list_.MoveByKey(key);
  }
}

void frmFind::OnCommand(int id, int notification) {
  if (id == kFieldId && notification == EN_CHANGE) {
    told_.clear();
    walk_.Forget();
    // For screen readers: when the user selected a row, they were told that the list has the focus.
    if (chosen_) NotifyWinEvent(EVENT_OBJECT_FOCUS, field_, OBJID_CLIENT, CHILDID_SELF);
    Search();
    UpdateWindow(list_.hWnd());
  }
  if (notification != 0) return;
  if (id == Item::kGo) Activate();
  if (id == Item::kOutput) Output();
  if (id == Item::kCopy) Copy();
  if (id == Item::kTags) ShowTags();
  if (id == Item::kSystemKey) ChooseSystemKey();
  if (id == Item::kClose) Leave();
}

/// The palette was shown or activated, or hidden or deactivated.
void frmFind::OnShown(bool shown) {
  KillTimer(hWnd(), kForgetTimer);
  if (shown) {
    // Posted, because the main window first has to take in the text of the field that loses the focus.
    PostMessageA(hWnd(), kRefresh, 0, 0);
  } else {
    current_ = false;
    // Freed only after a while, because a closed palette is often opened again soon.
    SetTimer(hWnd(), kForgetTimer, kForgetDelayMs, nullptr);
  }
}

LRESULT frmFind::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      MakeControls();
      captionHook_.Install(hWnd(), services_.caption);
      return 0;
    case WM_SIZE:
      Layout();
      return 0;
    case WM_GETMINMAXINFO: {
      const Size least = LeastPaletteSize();
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {least.width, least.height};
      return 0;
    }
    case WM_ACTIVATE:
    case WM_SHOWWINDOW:
      OnShown(message == WM_ACTIVATE ? LOWORD(wParam) != WA_INACTIVE : wParam != FALSE);
      return Default(message, wParam, lParam);
    case kRefresh:
      if (current_ || IsWindowVisible(hWnd()) == 0) return 0;
      SearchAgain([this] { Refresh(); });
      ReadLibraries();
      return 0;
    case WM_SETFOCUS:
      SetFocus(field_);
      return 0;
    case WM_COMMAND:
      OnCommand(GET_WM_COMMAND_ID(wParam, lParam), lParam == 0 ? 0 : GET_WM_COMMAND_CMD(wParam, lParam));
      return 0;
    case WM_TIMER:
      if (wParam == kPreviewTimer) ShowPreview();
      if (wParam == kForgetTimer) Forget();
      return 0;
    case kLibraryRead:
      TakeResults();
      return 0;
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
      SendMessageA(preview_.hWnd(), message, wParam, lParam);
      InvalidateRect(list_.hWnd(), nullptr, FALSE);
      return 0;
    case WM_CLOSE:
      Leave();
      return 0;
    case WM_DESTROY:
      SavePlace();
      captionHook_.Remove();
      ForgetLibraries();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
