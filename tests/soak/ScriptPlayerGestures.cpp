#include <algorithm>
#include <cctype>
#include <filesystem>

#include "platform/Win32Text.h"
#include "tests/soak/ScriptPlayer.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {
namespace {

constexpr int kMostRows = 30;
constexpr int kLongText = 300;

/// A window that is too small for its layout keeps the last one: fields may be out of sight or cover others.
bool IsSeen(HWND field, POINT place) {
  ClientToScreen(field, &place);
  return WindowFromPoint(place) == field;
}

}  // namespace

bool ScriptPlayer::IsUnderNameBox(int row) const {
  RECT place{};
  SendMessageA(List(), LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
  MapWindowPoints(List(), nullptr, reinterpret_cast<POINT*>(&place), 2);
  const Rect box = Place(NameBox());
  const auto middle = static_cast<int>((place.top + place.bottom) / 2);
  return middle >= box.top && middle < box.bottom();
}

/// Clicks a row, counted round.
void ScriptPlayer::ClickListRow(int number, int times) {
  const auto rows = static_cast<int>(Rows().size());
  if (rows == 0) return;
  const int row = number % rows;
  // Not the row under the name box, and not into a double click.
  if (IsShown(NameBox()) && (times > 1 || IsUnderNameBox(row))) return;
  if (row == Selected() && times == 1 && Focus() == List()) return;
  Perform([&] { ClickRow(row, times); });
}

/// False when the focus does not get there: a name that is not taken keeps it.
bool ScriptPlayer::ClickInto(HWND field, int times) {
  if (Focus() == field && times == 1) return true;
  const POINT place = Aside({5, 5});
  Perform([&] {
    if (IsSeen(field, place)) return ClickAt(field, place, times);
    PostMessageA(field, times == 1 ? WM_LBUTTONDOWN : WM_LBUTTONDBLCLK, MK_LBUTTON, 0);
    PostMessageA(field, WM_LBUTTONUP, 0, 0);
  });
  return Focus() == field;
}

/// Selects what is between two places, counted as the field does, and types over it or deletes it.
void ScriptPlayer::Replace(HWND field, Span span, const std::string& text) {
  if (!IsShown(field) || !ClickInto(field)) return;
  // What a random run goes on adding to would grow for ever.
  if (GetWindowTextLengthA(field) > kLongText) span = {};
  SendMessageA(field, EM_SETSEL, static_cast<WPARAM>(span.from), span.to);
  const bool typed = std::ranges::all_of(text, [](char c) { return c == '\n' || VkKeyScanA(c) != -1; });
  Perform([&] {
    if (text.empty()) PressKey(VK_DELETE);
    for (const char c : text) {
      if (!typed) {
        SendMessageA(field, WM_CHAR, static_cast<unsigned char>(c), 1);
      } else if (c == '\n') {
        // Not by the keyboard, where a Shift of the keys around it would count for it.
        Settle();
        PostMessageA(field, WM_KEYDOWN, VK_RETURN, 1);
        Settle();
      } else {
        TypeText(std::string(1, c));
      }
    }
  });
}

void ScriptPlayer::TakeCode(Span span, WORD key) {
  if (CodeLocked() || !ClickInto(Code())) return;
  SendMessageA(Code(), EM_SETSEL, static_cast<WPARAM>(span.from), span.to);
  Perform([&] { PressKey(key, {VK_CONTROL}); });
}

void ScriptPlayer::PressKeys(const std::string& keys) {
  static const std::map<std::string, WORD> named{
      {"Enter", VK_RETURN}, {"Escape", VK_ESCAPE}, {"Delete", VK_DELETE}, {"Up", VK_UP},
      {"Down", VK_DOWN},    {"End", VK_END},       {"Tab", VK_TAB},       {"Space", VK_SPACE},
      {"Menu", VK_APPS},    {"F1", VK_F1},         {"F2", VK_F2},         {"F4", VK_F4},
      {"F9", VK_F9},        {"F10", VK_F10}};
  const std::size_t last = keys.find_last_of('+') + 1;
  const auto key = named.find(keys.substr(last));
  Need(key != named.end() || last + 1 == keys.size(), "no key " + keys);
  const WORD code = key == named.end() ? static_cast<WORD>(keys[last]) : key->second;
  const bool control = keys.starts_with("Ctrl+");
  const bool shift = keys.find("Shift+") != std::string::npos;
  if (keys == "Ctrl+N" && Rows().size() >= kMostRows) return;
  Perform([&] {
    if (control && shift) PressKey(code, {VK_CONTROL, VK_SHIFT});
    if (control != shift) PressKey(code, {static_cast<WORD>(control ? VK_CONTROL : VK_SHIFT)});
    if (!control && !shift) PressKey(code);
  });
}

void ScriptPlayer::PressButton(const std::string& name) {
  const bool ofEditor = name == "Commit" || name == "Syntax Highlighting";
  if (name == "New Snippet" && Rows().size() >= kMostRows) return;
  const AccessibleClient bar(Control(ofEditor ? frmAddIn::kEditBarId : frmAddIn::kMainBarId));
  // Refused while the button is grey: then nothing may happen.
  Perform([&] { static_cast<void>(bar.Press(name)); });
}

void ScriptPlayer::ClickRight(const std::string& place, int row) {
  if (place == "row") return ClickRow(row, 1, MouseButton::Right);
  const HWND field = place == "code" ? Code() : List();
  const POINT at = place == "code" ? POINT{60, 40} : POINT{30, 200};
  if (IsSeen(field, at)) ClickAt(field, at, 1, MouseButton::Right);
}

void ScriptPlayer::ChooseItem(const std::string& item) {
  const HWND menu = FindVisibleOfClass("frmMenu");
  ClickItem(WindowText(menu), item);
  Need(Wait([&] { return !IsShown(menu); }), "the menu stays open");
}

void ScriptPlayer::UseMenu(const std::string& item) {
  if (IsShown(NameBox())) return;
  PostMessageA(window_, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(List()), -1);
  const HWND menu = Menu("Snippets");
  Need(menu != nullptr, "no menu comes up");
  // While it unfolds nothing else is handled.
  Settle();
  // Refused while the item is grey: then nothing may happen.
  if (item.empty() || !AccessibleClient(menu).Press(item)) PressKey(VK_ESCAPE);
  Need(Wait([&] { return IsWindow(menu) == 0; }), "the menu stays open");
  AnswerDialogs();
}

/// Chooses an entry by its text or its number, which counts round.
void ScriptPlayer::Choose(const std::string& library) {
  const Names entries = Libraries();
  if (entries.empty()) return;
  const bool isNumber = !library.empty() && std::isdigit(static_cast<unsigned char>(library.front())) != 0;
  const std::string entry =
      isNumber ? entries[static_cast<std::size_t>(std::stoi(library)) % entries.size()] : library;
  if ((isNumber && entry == kBrowseEntry) || entry == WindowText(Files())) return;
  if (std::ranges::find(entries, entry) == entries.end()) return;
  // At the arrow, which the box for a library's name does not cover.
  const POINT arrow{Place(Files()).width - 8, 8};
  if (SendMessageA(Files(), CB_GETDROPPEDSTATE, 0, 0) == 0) Perform([&] { ClickAt(Files(), arrow); });
  if (Focus() == Files()) Perform([&] { ChooseFromOpenList(entry); });
}

void ScriptPlayer::Browse(const std::string& library) {
  chosenPath_ = library.empty() ? "" : elsewhere_.File(library + ".bns");
  Choose(kBrowseEntry);
}

void ScriptPlayer::WaitForDraft() const {
  const auto drafted = [&] {
    std::error_code gone;  // a folder may go while it is looked through
    std::filesystem::recursive_directory_iterator file(program_.folder().path(), gone);
    while (file != end(file) && file->path().filename() != "draft.bns") file.increment(gone);
    return file != end(file);
  };
  Need(WaitUntil(drafted), "no draft is written");
}

/// Selects a version, counted from the newest.
void ScriptPlayer::ShowHistory(int version) {
  PressKey('H', {VK_CONTROL, VK_SHIFT});
  const auto list = [] { return GetDlgItem(FindVisibleOfClass("frmHistory"), frmHistory::kVersionsId); };
  Need(Wait([&] { return Focus() == list() && !RowsOf(list()).empty(); }), "no history comes up");
  PressKey(VK_HOME);
  for (int below = version; below > 0; --below) PressKey(VK_DOWN);
  look_ = [window = GetParent(list())] { return HistoryState(window); };
}

/// Of the history window, which is closed then, or else of the notice.
void ScriptPlayer::PressInHistory(const std::string& caption) {
  const HWND history = FindVisibleOfClass("frmHistory");
  const HWND window = history != nullptr ? history : FindVisibleOfClass("Notice");
  const HWND button = FindWindowExA(window, nullptr, "BUTTON", caption.c_str());
  Need(button != nullptr, "there is no button " + caption);
  ClickCentre(button);
  if (history != nullptr) PressKey(VK_ESCAPE);
  AnswerDialogs();
}

void ScriptPlayer::GoToAnotherWindow() const {
  const TestFrame other;
  Need(Wait([&] { return IsForeground(other.get()); }), "no other window comes to the front");
  SetForegroundWindow(window_);
}

void ScriptPlayer::Resize(int width, int height) const {
  SetWindowPos(window_, nullptr, width / 8, height / 8, 450 + width, 300 + height, SWP_NOZORDER);
}

void ScriptPlayer::Split(bool columns, int by) const {
  HWND splitter = FindWindowExA(window_, nullptr, "SnipstoreSplitter", nullptr);
  if (!columns) splitter = FindWindowExA(window_, splitter, "SnipstoreSplitter", nullptr);
  const auto at = [&](int distance) {
    return columns ? MAKELPARAM(2 + distance, 2) : MAKELPARAM(2, 2 + distance);
  };
  PostMessageA(splitter, WM_LBUTTONDOWN, MK_LBUTTON, at(0));
  PostMessageA(splitter, WM_MOUSEMOVE, MK_LBUTTON, at(by));
  PostMessageA(splitter, WM_LBUTTONUP, 0, at(0));
}

void ScriptPlayer::SizeTo(WPARAM command, bool (*done)(HWND)) {
  PostMessageA(window_, WM_SYSCOMMAND, command, 0);
  Need(Wait([&] { return done(window_); }), "the window cannot be minimised or maximised");
  PostMessageA(window_, WM_SYSCOMMAND, SC_RESTORE, 0);
  Need(Wait([&] { return !done(window_) && IsForeground(window_); }), "the window cannot be restored");
}

}  // namespace snip::test
