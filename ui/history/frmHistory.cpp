#include "ui/history/frmHistory.h"

#include <windowsx.h>
#include <commdlg.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "history/SystemFiles.h"
#include "platform/Fonts.h"
#include "platform/Shell.h"
#include "platform/Win32Text.h"
#include "resources/resource.h"
#include "ui/dialogs/CommonDialog.h"
#include "ui/history/LocalTime.h"

namespace snip {
namespace {

constexpr UINT_PTR kLookTimer = 1;
constexpr std::chrono::milliseconds kUnnoticed{15};  ///< All but large libraries are read by then.
constexpr const char* kCodeFace = "Courier New";
constexpr double kCodePoints = 10;
constexpr std::size_t kTabColumns = 4;

const char* InWords(VersionTag tag) {
  switch (tag) {
    case VersionTag::Outside:
      return "by another program";
    case VersionTag::Cut:
      return "damaged";
    case VersionTag::Unsaved:
      return "unsaved changes";
    default:
      return "";
  }
}

std::string WithoutTabs(std::string_view text, std::size_t column) {
  std::string shown;
  for (const char c : text) {
    if (c != '\t') {
      shown += c;
    } else {
      shown.append(kTabColumns - (column + shown.size()) % kTabColumns, ' ');
    }
  }
  return shown;
}

}  // namespace

frmHistory::~frmHistory() {
  Destroy();
}

void frmHistory::Show(HWND owner) {
  if (hWnd() == nullptr) {
    RECT place{};
    GetWindowRect(owner, &place);
    font_ = MessageFont();
    codeFont_ = FontOfSize(kCodeFace, kCodePoints);
    character_ = CharacterSize(font_.get());
    const Size size{character_.width * 130, character_.height * 36};
    if (!Create({.className = "frmHistory",
                 .title = "History",
                 .style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                 .exStyle = WS_EX_CONTROLPARENT,
                 .place = {static_cast<int>(place.left) + 24, static_cast<int>(place.top) + 24, size.width,
                           size.height},
                 .parent = owner,
                 .iconId = IDI_SNIPSTORE}))
      return;
    SetTimer(hWnd(), kLookTimer, USER_TIMER_MINIMUM, nullptr);  // the window appears before it is filled
  } else {
    Reload();
  }
  ShowWindow(hWnd(), IsIconic(hWnd()) != 0 ? SW_RESTORE : SW_SHOW);
  SetFocus(List(kVersionsId));
}

bool frmHistory::PreTranslate(MSG& message) {
  if (hWnd() == nullptr || (message.hwnd != hWnd() && IsChild(hWnd(), message.hwnd) == 0)) return false;
  if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) {
    PostMessageA(hWnd(), WM_CLOSE, 0, 0);
    return true;
  }
  return IsDialogMessageA(hWnd(), &message) != 0;
}

// --- Controls ---------------------------------------------------------------------------------------------

void frmHistory::MakeControls() {
  captionHook_.Install(hWnd(), caption_);
  constexpr DWORD list = WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT;
  const auto make = [this](const char* name, int id, DWORD style, HFONT font) {
    // The label before a list names it, and so does the list's text for screen readers that ignore labels.
    CreateControl(hWnd(), "STATIC", name, WS_VISIBLE, 0, id + 100, font_.get());
    lists_.at(static_cast<std::size_t>(id - kVersionsId)) =
        CreateControl(hWnd(), "LISTBOX", name, style, WS_EX_CLIENTEDGE, id, font);
  };
  make("Versions", kVersionsId, list, font_.get());
  make("Snippets", kSnippetsId, list, font_.get());
  make("Differences from the library as it is now", kLinesId,
       list | WS_HSCROLL | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS, codeFont_.get());
  Send(kLinesId, LB_SETITEMHEIGHT, 0, CharacterSize(codeFont_.get()).height + 1);
  const auto button = [this](const char* caption, int id) {
    CreateControl(hWnd(), "BUTTON", caption, WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON, 0, id, font_.get());
  };
  button("Put &Snippet Back", kPutSnippetBackId);
  button("Put &Library Back", kPutLibraryBackId);
  button("Save &Copy As...", kSaveCopyId);
  button("&Open Folder", kOpenFolderId);
}

void frmHistory::Layout() {
  const Size room = ClientSize(hWnd());
  const int gap = character_.width;
  const int line = character_.height + 2;
  const int buttonHeight = character_.height * 7 / 4;
  const int leftWidth = std::min(character_.width * 52, (room.width - 3 * gap) * 45 / 100);
  const int height = room.height - buttonHeight - 3 * gap;
  const int versions = (height - 2 * line) * 45 / 100;
  const auto place = [this](int id, const Rect& where) { MoveTo(GetDlgItem(hWnd(), id), where); };
  place(kVersionsId + 100, {gap, gap, leftWidth, line});
  place(kVersionsId, {gap, gap + line, leftWidth, versions});
  const int below = gap + line + versions + gap / 2;
  place(kSnippetsId + 100, {gap, below, leftWidth, line});
  place(kSnippetsId, {gap, below + line, leftWidth, height - below - line + gap});
  const int right = 2 * gap + leftWidth;
  place(kLinesId + 100, {right, gap, room.width - right - gap, line});
  place(kLinesId, {right, gap + line, room.width - right - gap, height - line});
  int left = gap;
  for (int id = kPutSnippetBackId; id <= kOpenFolderId; ++id) {
    const HWND button = GetDlgItem(hWnd(), id);
    const int width = TextSize(font_.get(), WindowText(button)).width + 3 * gap;
    place(id, {left, room.height - buttonHeight - gap, width, buttonHeight});
    left += width + gap;
  }
}

// --- Versions ---------------------------------------------------------------------------------------------

void frmHistory::Reload() {
  source_.TakeEdits();
  const std::string name = source_.Name();
  std::vector<Version> versions = source_.Versions();
  const bool same = name == name_ && source_.Changes() == changes_ &&
                    std::ranges::equal(versions, entries_, {}, {}, &Entry::version);
  if (same && read_) return EnableButtons();
  const std::optional<std::size_t> selected = SelectedEntry();
  const std::string kept =
      selected && name == name_ ? FileNameOf(entries_[*selected].version) : std::string();
  wanted_ = kept.empty() ? std::string() : SelectedText(kSnippetsId);
  std::vector<Entry> entries;
  for (const Version& version : versions) entries.push_back({.version = version});
  HistoryReader::ReadVersion read = source_.Reading();
  const std::span<const Snippet> now = source_.Now();
  // If memory runs out up to here, nothing has changed.
  looking_ = reader_.Begin(std::move(versions), read, {now.begin(), now.end()});
  SetWindowTextA(hWnd(), ("History of '" + name + "'").c_str());
  name_ = name;
  changes_ = source_.Changes();
  entries_ = std::move(entries);
  read_ = std::move(read);
  deleted_.clear();
  Send(kVersionsId, WM_SETREDRAW, FALSE);
  Send(kVersionsId, LB_RESETCONTENT);
  Send(kVersionsId, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(TextOfDeletedRow().c_str()));
  std::size_t row = entries_.empty() ? 0 : 1;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    Send(kVersionsId, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(TextOfRow(entries_[i]).c_str()));
    if (kept == FileNameOf(entries_[i].version)) row = i + 1;
  }
  Send(kVersionsId, LB_SETCURSEL, row);
  Repaint(kVersionsId);
  compared_.reset();
  // Posted, because the work so far takes long enough for a large library.
  PostMessageA(hWnd(), WM_COMMAND, MAKEWPARAM(kVersionsId, LBN_SELCHANGE), 0);
}

std::string frmHistory::TextOfRow(const Entry& entry) const {
  std::string text = DateAndTime(entry.version.CameAbout());
  if (!entry.changes.empty()) text += "   " + entry.changes;
  const std::string words = InWords(entry.version.tag);
  return words.empty() ? text : text + "   (" + words + ")";
}

/// Paints a list whose painting was switched off while it was filled.
void frmHistory::Repaint(int list) {
  Send(list, WM_SETREDRAW, TRUE);
  InvalidateRect(List(list), nullptr, TRUE);
}

/// Replaces the text of a version's row, and paints only once.
void frmHistory::SetRow(std::size_t row, const std::string& text) {
  const LRESULT selected = Send(kVersionsId, LB_GETCURSEL);
  const LRESULT top = Send(kVersionsId, LB_GETTOPINDEX);
  Send(kVersionsId, WM_SETREDRAW, FALSE);
  Send(kVersionsId, LB_DELETESTRING, row);
  Send(kVersionsId, LB_INSERTSTRING, row, reinterpret_cast<LPARAM>(text.c_str()));
  Send(kVersionsId, LB_SETCURSEL, static_cast<WPARAM>(selected));
  Send(kVersionsId, LB_SETTOPINDEX, static_cast<WPARAM>(top));
  Repaint(kVersionsId);
}

std::string frmHistory::TextOfDeletedRow() const {
  return "Deleted snippets (" + std::to_string(deleted_.size()) + (looking_ ? " so far)" : ")");
}

/// Shows what has been read since the last call.
void frmHistory::TakeFound() {
  if (!read_) return Reload();
  HistoryReader::Found found = reader_.Take();
  for (auto& [entry, changes] : found.changes) {
    entries_[entry].changes = std::move(changes);
    SetRow(entry + 1, TextOfRow(entries_[entry]));
  }
  std::ranges::move(found.deleted, std::back_inserter(deleted_));
  if (found.compared && SelectedEntry() == found.compared->version) {
    compared_ = std::move(found.compared);
    ShowRows();
  }
  if (!found.all) return;
  KillTimer(hWnd(), kLookTimer);
  if (!std::exchange(looking_, false)) return;
  SetRow(0, TextOfDeletedRow());
  if (!ShowsDeleted()) return;
  // Keeps the user's selection, since rows are only added at the end.
  const LRESULT chosen = Send(kSnippetsId, LB_GETCURSEL);
  ShowRows();
  if (chosen <= 0) return;
  Send(kSnippetsId, LB_SETCURSEL, static_cast<WPARAM>(chosen));
  SnippetChosen();
}

std::optional<std::size_t> frmHistory::SelectedEntry() const {
  const LRESULT row = hWnd() == nullptr ? LB_ERR : Send(kVersionsId, LB_GETCURSEL);
  const auto entry = static_cast<std::size_t>(row - 1);
  return row < 1 || entry >= entries_.size() ? std::nullopt : std::optional(entry);
}

bool frmHistory::ShowsDeleted() const {
  return Send(kVersionsId, LB_GETCURSEL) == 0;
}

void frmHistory::VersionChosen() {
  compared_.reset();
  if (const auto entry = SelectedEntry()) reader_.Compare(*entry, kUnnoticed);
  SetTimer(hWnd(), kLookTimer, USER_TIMER_MINIMUM, nullptr);
  TakeFound();
  if (!compared_) ShowRows();
}

/// Fills "Snippets"; the list stays empty while the version is being read.
void frmHistory::ShowRows() {
  Send(kSnippetsId, WM_SETREDRAW, FALSE);
  Send(kSnippetsId, LB_RESETCONTENT);
  const auto add = [this](const std::string& text) {
    const LRESULT row = Send(kSnippetsId, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
    if (row == 0 || text == wanted_) Send(kSnippetsId, LB_SETCURSEL, static_cast<WPARAM>(row));
  };
  if (ShowsDeleted()) {
    std::string time;
    std::optional<std::size_t> timed;
    for (const DeletedSnippets::Row& row : deleted_) {
      if (std::exchange(timed, row.version) != row.version)
        time = DateAndTime(entries_[row.version].version.CameAbout());
      add(row.snippet.Name + "   (" + time + ")");
    }
  } else if (compared_) {
    for (const SnippetRow& row : compared_->rows) add(row.text);
    wanted_.clear();
  }
  Repaint(kSnippetsId);
  SnippetChosen();
}

std::string frmHistory::SelectedText(int list) const {
  return ListBoxText(List(list), static_cast<int>(Send(list, LB_GETCURSEL)));
}

// --- Snippets ---------------------------------------------------------------------------------------------

std::optional<std::size_t> frmHistory::ChosenRow() const {
  const LRESULT selected = Send(kSnippetsId, LB_GETCURSEL);
  return selected < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(selected));
}

/// The chosen snippet as the version has it; null if the version does not have it.
const Snippet* frmHistory::ChosenSnippet() const {
  const auto row = ChosenRow();
  if (!row) return nullptr;
  if (ShowsDeleted()) return *row < deleted_.size() ? &deleted_[*row].snippet : nullptr;
  if (!compared_ || *row >= compared_->rows.size()) return nullptr;
  const auto then = compared_->rows[*row].then;
  return then ? &compared_->snippets[*then] : nullptr;
}

/// The chosen snippet's place in the library as it is now, if it is there.
std::optional<std::size_t> frmHistory::ChosenPlaceNow() const {
  const auto row = ChosenRow();
  if (!row || !compared_ || *row >= compared_->rows.size()) return std::nullopt;
  const auto place = compared_->rows[*row].now;
  return place && *place < source_.Now().size() ? place : std::nullopt;
}

void frmHistory::SnippetChosen() {
  const Snippet* const then = ChosenSnippet();
  const auto place = ChosenPlaceNow();
  const Snippet* const now = place ? &source_.Now()[*place] : nullptr;
  lines_ = now == nullptr && then == nullptr ? std::vector<DifferenceLine>() : DifferingLines(now, then);
  if (compared_ && compared_->rows.empty()) {
    lines_ = {
        {.mark = '=',
         .text = compared_->readable ? "The library is the same now." : "This version cannot be read."}};
  }
  Send(kLinesId, WM_SETREDRAW, FALSE);
  Send(kLinesId, LB_RESETCONTENT);
  std::size_t longest = 0;
  for (const DifferenceLine& line : lines_) {
    const std::string text = std::string(1, line.mark) + " " + line.text;
    longest = std::max(longest, WithoutTabs(text, 0).size());
    Send(kLinesId, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
  }
  Send(kLinesId, LB_SETHORIZONTALEXTENT,
       (longest + 1) * static_cast<std::size_t>(TextSize(codeFont_.get(), "M").width));
  Repaint(kLinesId);
  EnableButtons();
}

void frmHistory::EnableButtons() {
  const auto enable = [this](int id, bool enabled) {
    const HWND button = GetDlgItem(hWnd(), id);
    // A disabled button that keeps the focus would take every key, Escape too.
    if (!enabled && GetFocus() == button) SetFocus(List(kSnippetsId));
    EnableWindow(button, enabled ? TRUE : FALSE);
  };
  // After a change of the library the places are not valid until it is compared again.
  const bool current = source_.Changes() == changes_;
  enable(kPutSnippetBackId, current && source_.CanPutBack() && ChosenSnippet() != nullptr);
  enable(kPutLibraryBackId, source_.CanPutAllBack() && compared_ && !compared_->snippets.empty());
  enable(kSaveCopyId, SelectedEntry().has_value());
}

// --- Ways back --------------------------------------------------------------------------------------------

void frmHistory::PutSnippetBack() {
  // The library has changed, so the snippet's place may now be another snippet's.
  if (source_.Changes() != changes_) return Reload();
  const Snippet* const snippet = ChosenSnippet();
  if (snippet == nullptr || !source_.CanPutBack()) return;
  source_.PutBack(*snippet, ChosenPlaceNow());
  Reload();
}

void frmHistory::PutLibraryBack() {
  if (!compared_ || !source_.CanPutAllBack()) return;
  source_.PutAllBack(compared_->snippets);
  Reload();
}

void frmHistory::SaveCopy() {
  const auto entry = SelectedEntry();
  if (!entry) return;
  const auto bytes = read_(entries_[*entry].version);
  CommonDialog dialog;
  dialog.hWnd = hWnd();
  dialog.DialogTitle = "Save Copy As";
  dialog.Filter = "Snipstore Snippets|*.bns";
  dialog.DefaultExt = "bns";
  dialog.Flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST;
  dialog.FileName = source_.Name() + " " + FileNameOf(entries_[*entry].version);
  dialog.ShowSave();
  if (dialog.FileName.empty()) return;
  if (!bytes || !SystemFiles().Write(Utf8FromAnsi(dialog.FileName), *bytes))
    source_.Tell("The copy could not be saved.");
}

void frmHistory::OnCommand(int id, int notification) {
  if (id == kVersionsId && notification == LBN_SELCHANGE) VersionChosen();
  if (id == kSnippetsId && notification == LBN_SELCHANGE) SnippetChosen();
  if (notification != BN_CLICKED) return;
  if (id == kPutSnippetBackId) PutSnippetBack();
  if (id == kPutLibraryBackId) PutLibraryBack();
  if (id == kSaveCopyId) SaveCopy();
  if (id == kOpenFolderId) ShellOpen(source_.Folder());
}

// --- Painting ---------------------------------------------------------------------------------------------

void frmHistory::DrawLine(const DRAWITEMSTRUCT& item) const {
  if (item.itemID >= lines_.size()) return;
  const DifferenceLine& line = lines_[item.itemID];
  const bool selected = (item.itemState & ODS_SELECTED) != 0;
  FillRect(item.hDC, &item.rcItem, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
  SetBkMode(item.hDC, TRANSPARENT);
  SetTextColor(item.hDC, GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
  const SelectedObject font(item.hDC, codeFont_.get());
  const int left = static_cast<int>(item.rcItem.left) + 2;
  const int top = static_cast<int>(item.rcItem.top);
  const int column = TextSize(codeFont_.get(), "M").width;
  if (line.mark == '=') {
    const std::string heading = "--- " + line.text;
    TextOutA(item.hDC, left, top, heading.c_str(), static_cast<int>(heading.size()));
  } else {
    TextOutA(item.hDC, left, top, &line.mark, 1);
    DrawCode(item.hDC, line, left + 2 * column, top, selected);
  }
  if ((item.itemState & ODS_FOCUS) != 0) DrawFocusRect(item.hDC, &item.rcItem);
}

void frmHistory::DrawCode(HDC dc, const DifferenceLine& line, int left, int top, bool selected) const {
  std::size_t column = 0;
  const auto draw = [&](std::string_view part, COLORREF color) {
    if (part.empty()) return;
    const std::string shown = WithoutTabs(part, column);
    if (!selected) SetTextColor(dc, color);
    TextOutA(dc, left, top, shown.c_str(), static_cast<int>(shown.size()));
    left += TextSize(codeFont_.get(), shown).width;
    column += shown.size();
  };
  const std::string_view text = line.text;
  std::size_t done = 0;
  const auto tokens = line.code ? TokensOfLine(text, line.before).tokens : std::vector<VbToken>();
  for (const VbToken& token : tokens) {
    COLORREF color = colours_.fore;
    if (token.kind == TokenKind::Keyword || token.kind == TokenKind::Directive) color = colours_.keyword;
    if (token.kind == TokenKind::Comment) color = colours_.comment;
    if (token.kind == TokenKind::String) color = colours_.string;
    draw(text.substr(done, token.begin - done), colours_.fore);
    draw(text.substr(token.begin, token.end - token.begin), color);
    done = token.end;
  }
  draw(text.substr(done), colours_.fore);
}

LRESULT frmHistory::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      colours_ = CodeColoursOn(GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_WINDOWTEXT));
      MakeControls();
      return 0;
    case WM_SIZE:
      Layout();
      return 0;
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {character_.width * 80, character_.height * 20};
      return 0;
    case WM_ACTIVATE:
      // The library may have changed while another window was active.
      if (LOWORD(wParam) != WA_INACTIVE && read_) Reload();
      return Default(message, wParam, lParam);
    case WM_TIMER:
      TakeFound();
      return 0;
    case WM_DRAWITEM:
      DrawLine(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
      return TRUE;
    case WM_COMMAND:
      OnCommand(GET_WM_COMMAND_ID(wParam, lParam), GET_WM_COMMAND_CMD(wParam, lParam));
      return 0;
    case WM_SYSCOLORCHANGE:
      colours_ = CodeColoursOn(GetSysColor(COLOR_WINDOW), GetSysColor(COLOR_WINDOWTEXT));
      InvalidateRect(hWnd(), nullptr, TRUE);
      return 0;
    case WM_DESTROY:
      reader_.Begin({}, nullptr, {});
      read_ = nullptr;
      entries_.clear();
      deleted_.clear();
      compared_.reset();
      captionHook_.Remove();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
