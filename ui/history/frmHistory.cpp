#include "ui/history/frmHistory.h"

#include <windowsx.h>
#include <commdlg.h>

#include <algorithm>
#include <utility>
#include <variant>

#include "history/ChangeCounts.h"
#include "history/SystemFiles.h"
#include "library/BnsFormat.h"
#include "platform/Fonts.h"
#include "platform/Shell.h"
#include "platform/Win32Text.h"
#include "resources/resource.h"
#include "ui/dialogs/CommonDialog.h"
#include "ui/history/LocalTime.h"

namespace snip {
namespace {

constexpr UINT_PTR kLookTimer = 1;
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
  }
  Reload();
  ShowWindow(hWnd(), IsIconic(hWnd()) != 0 ? SW_RESTORE : SW_SHOW);
  SetFocus(GetDlgItem(hWnd(), kVersionsId));
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
    // A label before each list names it, and so does its text, for readers that do not look at labels.
    CreateControl(hWnd(), "STATIC", name, WS_VISIBLE, 0, id + 100, font_.get());
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
  const std::optional<std::size_t> selected = SelectedEntry();
  const std::string kept = selected ? FileNameOf(entries_[*selected].version) : std::string();
  const LRESULT snippet = Send(kSnippetsId, LB_GETCURSEL);
  const std::string snippetText = ListBoxText(GetDlgItem(hWnd(), kSnippetsId), static_cast<int>(snippet));
  SetWindowTextA(hWnd(), ("History of '" + source_.Name() + "'").c_str());
  entries_.clear();
  for (const Version& version : source_.Versions()) entries_.push_back({.version = version});
  looked_ = 0;
  newer_.clear();
  deleted_ = {};
  cached_.reset();
  Send(kVersionsId, LB_RESETCONTENT);
  Send(kVersionsId, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(""));
  SetDeletedRow();
  std::size_t row = entries_.empty() ? 0 : 1;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    Send(kVersionsId, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(TextOfRow(entries_[i]).c_str()));
    if (kept == FileNameOf(entries_[i].version)) row = i + 1;
  }
  Send(kVersionsId, LB_SETCURSEL, row);
  VersionChosen();
  if (!kept.empty() &&
      ListBoxText(GetDlgItem(hWnd(), kSnippetsId), static_cast<int>(snippet)) == snippetText) {
    // What was chosen stays, so that a button does what the user saw.
    Send(kSnippetsId, LB_SETCURSEL, static_cast<WPARAM>(snippet));
    SnippetChosen();
  }
  SetTimer(hWnd(), kLookTimer, USER_TIMER_MINIMUM, nullptr);
}

std::string frmHistory::TextOfRow(const Entry& entry) const {
  std::string text = DateAndTime(entry.version.CameAbout());
  if (!entry.changes.empty()) text += "   " + entry.changes;
  const std::string words = InWords(entry.version.tag);
  return words.empty() ? text : text + "   (" + words + ")";
}

/// Replaces a row in its place.
void frmHistory::SetVersionRow(std::size_t entry) {
  const std::string text = TextOfRow(entries_[entry]);
  const LRESULT selected = Send(kVersionsId, LB_GETCURSEL);
  const LRESULT top = Send(kVersionsId, LB_GETTOPINDEX);
  Send(kVersionsId, LB_DELETESTRING, entry + 1);
  Send(kVersionsId, LB_INSERTSTRING, entry + 1, reinterpret_cast<LPARAM>(text.c_str()));
  Send(kVersionsId, LB_SETCURSEL, static_cast<WPARAM>(selected));
  Send(kVersionsId, LB_SETTOPINDEX, static_cast<WPARAM>(top));
}

void frmHistory::SetDeletedRow() {
  const std::string text = "Deleted snippets (" + std::to_string(deleted_.rows().size()) +
                           (looked_ < entries_.size() ? " so far)" : ")");
  const LRESULT selected = Send(kVersionsId, LB_GETCURSEL);
  Send(kVersionsId, LB_DELETESTRING, 0);
  Send(kVersionsId, LB_INSERTSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
  Send(kVersionsId, LB_SETCURSEL, static_cast<WPARAM>(selected));
}

/// Compares one more version, so that the window answers in between.
void frmHistory::LookAtNextVersion() {
  if (looked_ < entries_.size()) {
    std::vector<Snippet> snippets =
        SnippetsIn(source_.Read(entries_[looked_].version).value_or(std::string()));
    if (looked_ > 0) {
      entries_[looked_ - 1].changes = TextOf(CountChanges(snippets, newer_));
      SetVersionRow(looked_ - 1);
    }
    deleted_.Add(looked_, snippets, source_.Now());
    newer_ = std::move(snippets);
    ++looked_;
  }
  if (looked_ < entries_.size()) return;
  KillTimer(hWnd(), kLookTimer);
  newer_ = {};
  SetDeletedRow();
  if (ShowsDeleted()) VersionChosen();
}

std::optional<std::size_t> frmHistory::SelectedEntry() const {
  const LRESULT row = hWnd() == nullptr ? LB_ERR : Send(kVersionsId, LB_GETCURSEL);
  const auto entry = static_cast<std::size_t>(row - 1);
  return row < 1 || entry >= entries_.size() ? std::nullopt : std::optional(entry);
}

bool frmHistory::ShowsDeleted() const {
  return Send(kVersionsId, LB_GETCURSEL) == 0;
}

const std::vector<Snippet>& frmHistory::SnippetsOf(std::size_t entry) {
  if (cached_ != entry) {
    snippets_ = SnippetsIn(source_.Read(entries_[entry].version).value_or(std::string()));
    cached_ = entry;
  }
  return snippets_;
}

void frmHistory::VersionChosen() {
  rows_.clear();
  std::vector<std::string> texts;
  if (ShowsDeleted()) {
    for (const DeletedSnippets::Row& row : deleted_.rows())
      texts.push_back(row.name + "   (" + DateAndTime(entries_[row.version].version.CameAbout()) + ")");
  } else if (const auto entry = SelectedEntry()) {
    rows_ = DifferingSnippets(source_.Now(), SnippetsOf(*entry));
    for (const SnippetRow& row : rows_) texts.push_back(row.text);
  }
  Send(kSnippetsId, WM_SETREDRAW, FALSE);
  Send(kSnippetsId, LB_RESETCONTENT);
  for (const std::string& text : texts)
    Send(kSnippetsId, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
  Send(kSnippetsId, WM_SETREDRAW, TRUE);
  InvalidateRect(GetDlgItem(hWnd(), kSnippetsId), nullptr, TRUE);
  if (!texts.empty()) Send(kSnippetsId, LB_SETCURSEL, 0);
  SnippetChosen();
}

// --- Snippets ---------------------------------------------------------------------------------------------

/// The version's state of the chosen snippet; null when it has none.
const Snippet* frmHistory::ChosenSnippet() {
  const LRESULT selected = Send(kSnippetsId, LB_GETCURSEL);
  if (selected < 0) return nullptr;
  const auto row = static_cast<std::size_t>(selected);
  if (ShowsDeleted()) {
    if (row >= deleted_.rows().size()) return nullptr;
    const DeletedSnippets::Row& deleted = deleted_.rows()[row];
    const std::vector<Snippet>& snippets = SnippetsOf(deleted.version);
    return deleted.place < snippets.size() ? &snippets[deleted.place] : nullptr;
  }
  const auto entry = SelectedEntry();
  if (!entry || row >= rows_.size() || !rows_[row].then) return nullptr;
  const std::vector<Snippet>& snippets = SnippetsOf(*entry);
  return *rows_[row].then < snippets.size() ? &snippets[*rows_[row].then] : nullptr;
}

/// Where in the library as it is now the chosen snippet is, if it is there.
std::optional<std::size_t> frmHistory::ChosenPlaceNow() const {
  const LRESULT selected = Send(kSnippetsId, LB_GETCURSEL);
  if (selected < 0 || static_cast<std::size_t>(selected) >= rows_.size()) return std::nullopt;
  const auto place = rows_[static_cast<std::size_t>(selected)].now;
  return place && *place < source_.Now().size() ? place : std::nullopt;
}

void frmHistory::SnippetChosen() {
  const Snippet* const then = ChosenSnippet();
  const auto place = ChosenPlaceNow();
  const Snippet* const now = place ? &source_.Now()[*place] : nullptr;
  lines_ = now == nullptr && then == nullptr ? std::vector<DifferenceLine>() : DifferingLines(now, then);
  if (SelectedEntry() && rows_.empty()) lines_ = {{.mark = '=', .text = "The library is the same now."}};
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
  Send(kLinesId, WM_SETREDRAW, TRUE);
  InvalidateRect(GetDlgItem(hWnd(), kLinesId), nullptr, TRUE);
  EnableButtons();
}

void frmHistory::EnableButtons() {
  const auto enable = [this](int id, bool enabled) {
    EnableWindow(GetDlgItem(hWnd(), id), enabled ? TRUE : FALSE);
  };
  const bool version = SelectedEntry().has_value();
  enable(kPutSnippetBackId, source_.CanPutBack() && ChosenSnippet() != nullptr);
  enable(kPutLibraryBackId, source_.CanPutAllBack() && version && !SnippetsOf(*SelectedEntry()).empty());
  enable(kSaveCopyId, version);
}

// --- Ways back --------------------------------------------------------------------------------------------

void frmHistory::PutSnippetBack() {
  const Snippet* const snippet = ChosenSnippet();
  if (snippet == nullptr || !source_.CanPutBack()) return;
  source_.PutBack(*snippet, ChosenPlaceNow());
  Reload();
}

void frmHistory::PutLibraryBack() {
  const auto entry = SelectedEntry();
  if (!entry || !source_.CanPutAllBack()) return;
  source_.PutAllBack(SnippetsOf(*entry));
  Reload();
}

void frmHistory::SaveCopy() {
  const auto entry = SelectedEntry();
  if (!entry) return;
  const auto bytes = source_.Read(entries_[*entry].version);
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
      // The library may have been changed meanwhile.
      if (LOWORD(wParam) != WA_INACTIVE && IsWindowVisible(hWnd()) != 0) Reload();
      return Default(message, wParam, lParam);
    case WM_TIMER:
      LookAtNextVersion();
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
      captionHook_.Remove();
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace snip
