#include "tests/app/MainWindowUser.h"

#include <shlwapi.h>

#include <algorithm>
#include <stdexcept>

#include "library/BnsFormat.h"
#include "platform/ScreenTwips.h"
#include "platform/Win32Text.h"
#include "tests/support/TestRegistry.h"
#include "ui/dialogs/frmMsg.h"
#include "ui/main/MainToolbars.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {
namespace {

constexpr int kFileDialogName = 0x47C;

std::string KeyOf(const std::string& section) {
  return "Software\\Brennic\\BnSnipstore\\2.0\\" + section;
}

// Between processes Wine translates the texts of lists only when they are asked for as wide characters.

std::string FromWide(const std::wstring& wide) {
  std::string text(wide.size(), '\0');
  const int size = WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), text.data(),
                                       static_cast<int>(text.size()), nullptr, nullptr);
  text.resize(static_cast<std::size_t>(size));
  return text;
}

Names TextsIn(HWND list, UINT countMessage, UINT lengthMessage, UINT textMessage) {
  Names texts;
  const LRESULT count = SendMessageW(list, countMessage, 0, 0);
  for (WPARAM row = 0; static_cast<LRESULT>(row) < count; ++row) {
    // Less than nothing when the row has gone meanwhile.
    const LRESULT length = std::max<LRESULT>(SendMessageW(list, lengthMessage, row, 0), 0);
    std::wstring wide(static_cast<std::size_t>(length) + 1, L'\0');
    SendMessageW(list, textMessage, row, reinterpret_cast<LPARAM>(wide.data()));
    wide.pop_back();
    texts.push_back(FromWide(wide));
  }
  return texts;
}

void Need(bool condition, const std::string& what) {
  if (!condition) throw std::runtime_error(what);
}

AccessibleChild ChildNamed(HWND window, const std::string& name) {
  const AccessibleClient client(window);
  for (const AccessibleChild& child : client.Children()) {
    if (child.name == name) return child;
  }
  throw std::runtime_error("nothing is called " + name);
}

/// Clicks a place on the screen that belongs to a window.
void ClickScreen(HWND window, POINT screen) {
  ScreenToClient(window, &screen);
  ClickAt(window, screen);
}

}  // namespace

std::string ClipboardNow() {
  if (OpenClipboard(nullptr) == 0) return {};
  const HANDLE data = GetClipboardData(CF_TEXT);
  const auto* text = data == nullptr ? nullptr : static_cast<const char*>(GlobalLock(data));
  std::string result = text == nullptr ? "" : text;
  if (text != nullptr) GlobalUnlock(data);
  CloseClipboard();
  return result;
}

MainWindowUser::MainWindowUser() : twips_(ScreenTwips()) {
  program_.MarkAsRunBefore();
}

Snippet MainWindowUser::Named(const std::string& name) {
  return {.Name = name, .Attachment = "", .Code = "'" + name, .Description = "about " + name};
}

void MainWindowUser::WriteLibrary(const std::string& library, const Names& snippets) const {
  std::vector<Snippet> contents;
  for (const std::string& name : snippets) contents.push_back(Named(name));
  program_.folder().Write(library + ".bns", WriteBns(contents));
}

void MainWindowUser::SetSetting(const std::string& section, const std::string& value,
                                const std::string& text) {
  SHSetValueA(HKEY_CURRENT_USER, KeyOf(section).c_str(), value.c_str(), REG_SZ, text.c_str(),
              static_cast<DWORD>(text.size() + 1));
}

std::string MainWindowUser::Setting(const std::string& section, const std::string& value) {
  return RegistryText(HKEY_CURRENT_USER, KeyOf(section), value.c_str());
}

void MainWindowUser::Open() {
  program_.Start();
  window_ = program_.MainWindow();
  const auto ready = [&] {
    return IsForeground(window_) && Focus() != nullptr && (Selected() == 0 || !Prompt().empty());
  };
  Need(window_ != nullptr && WaitUntil(ready), "the main window does not come up");
}

void MainWindowUser::Close() {
  PostMessageA(window_, WM_CLOSE, 0, 0);
  Need(program_.WaitForEnd(), "the program does not end: " + Prompt());
  Need(program_.ExitCode() == 0, "the program ended with an error");
}

HWND MainWindowUser::List() const {
  return Control(frmAddIn::kListId);
}
HWND MainWindowUser::Files() const {
  return Control(frmAddIn::kFilesId);
}
HWND MainWindowUser::Code() const {
  return GetDlgItem(Control(frmAddIn::kCodeId), BnRichEdit::kControlId);
}
HWND MainWindowUser::Description() const {
  return Control(frmAddIn::kDescriptionId);
}
HWND MainWindowUser::NameBox() const {
  return Control(frmAddIn::kNameId);
}
HWND MainWindowUser::FileNameBox() const {
  return Control(frmAddIn::kFileNameId);
}

int MainWindowUser::Selected() const {
  return static_cast<int>(SendMessageA(List(), LB_GETCURSEL, 0, 0));
}

Names MainWindowUser::RowsOf(HWND list) {
  return TextsIn(list, LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT);
}

Names MainWindowUser::Libraries() const {
  return TextsIn(Files(), CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT);
}

bool MainWindowUser::CodeLocked() const {
  return (GetWindowLongA(Code(), GWL_STYLE) & ES_READONLY) != 0;
}

GUITHREADINFO MainWindowUser::GuiThread() const {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(window_, nullptr), &info);
  return info;
}

bool MainWindowUser::FocusComes(HWND control) const {
  return WaitUntil([&] { return Focus() == control && IsForeground(window_); });
}

AccessibleChild MainWindowUser::Button(int bar, const std::string& name) const {
  return ChildNamed(Control(bar), name);
}

std::string MainWindowUser::Prompt() const {
  const HWND box = GetLastActivePopup(window_);
  const HWND label = box == window_ ? nullptr : GetDlgItem(box, frmMsg::kLabelId);
  return label != nullptr && IsWindowVisible(box) != 0 && IsForeground(box) ? WindowText(label) : "";
}

Rect MainWindowUser::Place(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return {static_cast<int>(place.left), static_cast<int>(place.top),
          static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top)};
}

POINT MainWindowUser::Aside(POINT place) {
  clicksAside_ = !clicksAside_;
  return {clicksAside_ ? place.x + 2 * GetSystemMetrics(SM_CXDOUBLECLK) : place.x, place.y};
}

void MainWindowUser::ClickRow(int row, int times, MouseButton button) {
  RECT place{};
  RECT client{};
  GetClientRect(List(), &client);
  const auto find = [&] {
    SendMessageA(List(), LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
  };
  find();
  if (place.top < client.top || place.bottom > client.bottom) {
    SendMessageA(List(), LB_SETTOPINDEX, static_cast<WPARAM>(row), 0);
    find();
  }
  ClickAt(List(), Aside({place.left + 5, (place.top + place.bottom) / 2}), times, button);
}

void MainWindowUser::ClickArrow() const {
  const HWND window = Control(frmAddIn::kMainBarId);
  const AccessibleClient bar(window);
  const Rect place = bar.Children()[MainButton::kOutput + 1].place;
  POINT at{place.left + 4, place.top + place.height / 2};
  ScreenToClient(window, &at);
  PointAt(window, at);
  // Once the button has found the pointer over it.
  WaitUntil([&] { return bar.Children()[MainButton::kOutput].Has(STATE_SYSTEM_HOTTRACKED); });
  ClickAt(window, at);
}

HWND MainWindowUser::Menu(const std::string& title) {
  HWND menu = nullptr;
  WaitUntil([&] {
    menu = FindVisibleWindow(title);
    return menu != nullptr;
  });
  return menu;
}

void MainWindowUser::ClickItem(const std::string& menu, const std::string& item) {
  const HWND window = Menu(menu);
  if (window == nullptr) throw std::runtime_error("no menu " + menu);
  Rect place;
  // It unfolds.
  WaitUntil([&] {
    const Rect before = place;
    place = ChildNamed(window, item).place;
    return before == place && Place(window).bottom() >= place.bottom();
  });
  ClickScreen(window, {place.left + place.width / 2, place.top + place.height / 2});
}

void MainWindowUser::ChooseFromOpenList(const std::string& entry) const {
  HWND list = nullptr;
  WaitUntil([&] { return (list = FindVisibleOfClass("ComboLBox")) != nullptr; });
  const Names entries = Libraries();
  const auto found = std::find(entries.begin(), entries.end(), entry);
  Need(list != nullptr && found != entries.end(), "no library " + entry);
  RECT place{};
  SendMessageA(list, LB_GETITEMRECT, static_cast<WPARAM>(found - entries.begin()),
               reinterpret_cast<LPARAM>(&place));
  ClickAt(list, {place.left + 20, (place.top + place.bottom) / 2});
}

void MainWindowUser::ChooseFile(const std::string& title, const std::string& path) const {
  const HWND dialog = WaitForWindow(title);
  Need(WaitUntil([&] { return IsForeground(dialog); }), title + " does not come up");
  if (!path.empty()) {
    SendMessageA(GetDlgItem(dialog, kFileDialogName), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
  }
  PressKey(path.empty() ? VK_ESCAPE : VK_RETURN);
  Need(WaitUntil([&] { return IsWindow(dialog) == 0; }), title + " stays open");
  Need(WaitUntil([&] { return IsForeground(window_) && IsChild(window_, Focus()) != 0; }), "no focus");
}

int MainWindowUser::Drag(HWND splitter, POINT by, const std::function<void()>& end) const {
  const Rect start = Place(splitter);
  const bool columns = start.width < start.height;
  const auto moved = [&] {
    const Rect now = Place(splitter);
    return static_cast<POINT>(columns ? POINT{now.left - start.left, 0} : POINT{0, now.top - start.top});
  };
  const auto held = [&] { return GuiThread().hwndCapture == splitter; };
  // In a third of its length, so that no other splitter meets it there.
  const POINT grip{start.width / 2, start.height / 3};
  PointAt(splitter, grip);
  PressMouse();
  Need(WaitUntil(held), "the splitter is not held");
  constexpr int kSteps = 3;
  for (int step = 1; step <= kSteps; ++step) {
    const POINT to{by.x * step / kSteps, by.y * step / kSteps};
    const bool follows = WaitUntil([&] {
      if (moved().x == to.x && moved().y == to.y) return true;
      // Again, because the display may echo an earlier place after a later one.
      MovePointer({start.left + grip.x + to.x, start.top + grip.y + to.y});
      return false;
    });
    Need(follows, "the splitter does not follow");
  }
  end();
  Need(WaitUntil([&] { return !held(); }), "the splitter is not let go");
  return columns ? moved().x : moved().y;
}

}  // namespace snip::test
