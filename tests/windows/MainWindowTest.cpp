#include <gtest/gtest.h>
#include <richedit.h>
#include <commctrl.h>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "library/BnsFormat.h"
#include "platform/Clipboard.h"
#include "platform/ScreenTwips.h"
#include "platform/Win32Text.h"
#include "tests/support/AccessibleClient.h"
#include "tests/support/MainWindowParts.h"
#include "ui/editor/CodeColours.h"
#include "ui/find/frmFindKey.h"
#include "ui/history/Notice.h"

namespace snip::test {
namespace {

Snippet Named(const std::string& name) {
  return {.Name = name, .Attachment = "", .Code = "'" + name, .Description = "about " + name};
}

/// The real window with real messages; only the message box is answered by the test.
class MainWindowTest : public testing::Test, protected MainWindowParts {
 protected:
  MainWindowTest()
      : MainWindowParts([this](const std::string& prompt, int, const std::string& title) {
          EXPECT_EQ(title, prompt.ends_with("Snipstore 2.0 format.") ? "" : "Brennic Snipstore 2.x");
          messages_.push_back(prompt);
          return MessageResult::Ok;
        }) {}

  void SetUp() override {
    folder_.Write("Numbers.bns", WriteBns(std::vector{Named("one"), Named("two"), Named("three")}));
  }

  void Open() {
    MovePointer({1000, 750});  // an opened list takes the row that comes up under the pointer
    ASSERT_TRUE(window_.Show());
    ASSERT_TRUE(WaitUntil([&] { return IsForeground(window_.hWnd()); }));
  }

  HWND Control(int id) const { return FindControl(window_.hWnd(), id); }
  HWND List() const { return Control(frmAddIn::kListId); }
  HWND Files() const { return Control(frmAddIn::kFilesId); }
  HWND Description() const { return Control(frmAddIn::kDescriptionId); }
  HWND NameBox() const { return Control(frmAddIn::kNameId); }
  HWND Code() const { return GetDlgItem(Control(frmAddIn::kCodeId), BnRichEdit::kControlId); }

  /// Opens the palette, types, and waits until all libraries are read.
  HWND Find(const std::string& text) {
    PressKey('F', {VK_CONTROL});
    HWND palette = nullptr;
    EXPECT_TRUE(Until([&] { return IsForeground(palette = FindVisibleWindow("Find Snippets")); }));
    TypeText(text);
    EXPECT_TRUE(Until([&] {
      return WindowText(GetDlgItem(palette, frmFind::kFieldId)).ends_with(text) &&
             WindowText(GetDlgItem(palette, frmFind::kStatusId)).find("reading") == std::string::npos;
    }));
    return palette;
  }
  /// What a screen reader is told of the rows; the selected one behind ">".
  static std::vector<std::string> FoundRows(HWND palette) {
    std::vector<std::string> rows;
    for (const AccessibleChild& row : AccessibleClient(GetDlgItem(palette, frmFind::kListId)).Children()) {
      rows.push_back((row.Has(STATE_SYSTEM_SELECTED) ? ">" : "") + row.name);
    }
    return rows;
  }
  std::string SelectedCode() const {
    char text[100]{};
    SendMessageA(Code(), EM_GETSELTEXT, 0, reinterpret_cast<LPARAM>(text));
    return text;
  }
  int CaretLine() const {
    return static_cast<int>(SendMessageA(Code(), EM_LINEFROMCHAR, static_cast<WPARAM>(-1), 0));
  }

  int Selected() const { return static_cast<int>(SendMessageA(List(), LB_GETCURSEL, 0, 0)); }

  void ClickRow(int row, MouseButton button = MouseButton::Left) {
    RECT place{};
    SendMessageA(List(), LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    ClickAt(List(), {place.left + 20, (place.top + place.bottom) / 2}, 1, button);
  }

  /// Handles the messages of the window and its accelerators as the program's own loop does.
  void Answer() {
    AnswerMessages([this](MSG& message) { return window_.PreTranslate(message); });
  }
  bool Until(const std::function<bool()>& condition) {
    return WaitUntil(condition, 10000, [this] { Answer(); });
  }

  std::vector<std::string> messages_;
  frmAddIn window_{Services()};
};

TEST_F(MainWindowTest, TheTitleBarStaysActiveFromTheStartToTheAnswerOfANotice) {
  const auto active = [&] {
    const COLORREF blueIfActive = GetPixel(FrameDC(window_.hWnd()).get(), 300, 10);
    return GetBValue(blueIfActive) > GetRValue(blueIfActive);
  };
  Open();
  EXPECT_TRUE(Until(active));
  std::optional<NoticeChoice> chosen;
  Notice notice([&](NoticeChoice choice) { chosen = choice; });
  notice.Show(window_.hWnd(), List(), {.line = "changed", .choices = {NoticeChoice::LoadAgain}});
  notice.Focus();
  EXPECT_TRUE(Until([&] { return active() && GetActiveWindow() != window_.hWnd(); }));
  PressKey(VK_RETURN);
  const auto answer = [&] { AnswerMessages([&](MSG& message) { return notice.PreTranslate(message); }); };
  EXPECT_TRUE(WaitUntil([&] { return chosen == NoticeChoice::LoadAgain; }, 10000, answer));
  EXPECT_TRUE(Until(active));
}

TEST_F(MainWindowTest, TheNameBoxGrowsSoThatAllOfTheNameIsSeenAndComesBeforeTheList) {
  for (const bool again : {false, true}) {
    if (again) window_.Unload();
    Open();
    PressKey(VK_F2);
    ASSERT_TRUE(Until([&] { return NameBox() != nullptr && GetFocus() == NameBox(); }));
    const std::string name(40, 'm');
    TypeText(name);
    ASSERT_TRUE(Until([&] { return WindowText(NameBox()) == name; }));
    const auto place = SendMessageA(NameBox(), EM_POSFROMCHAR, 0, 0);
    EXPECT_GE(static_cast<short>(LOWORD(place)), 0);
    PressKey(VK_ESCAPE);
    ASSERT_TRUE(Until([&] { return GetFocus() == List(); }));
    PressKey(VK_F2);
    ASSERT_TRUE(Until([&] { return GetFocus() == NameBox(); }));
    for (const HWND next : {List(), Description(), Control(frmAddIn::kAttachId)}) {
      PressKey(VK_TAB);
      ASSERT_TRUE(Until([&] { return GetFocus() == next; }));
      if (next == Description()) PressKey(VK_ESCAPE);  // which the field would have the window close for
    }
  }
}

TEST_F(MainWindowTest, TheOutputArrowStaysPressedAsLongAsItsMenuIsOpen) {
  Open();
  const HWND bar = Control(frmAddIn::kMainBarId);
  const POINT arrow{100, 12};
  const auto arrowPixels = [&] {
    const WindowDC dc(bar);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < 24; ++y) {
      for (int x = arrow.x - 8; x < arrow.x + 8; ++x) pixels.push_back(GetPixel(dc.get(), x, y));
    }
    return pixels;
  };
  const auto menuIsOpen = [] {
    const HWND menu = FindWindowA("frmMenu", "Output");
    return menu != nullptr && IsWindowVisible(menu) != 0 && GetCapture() == menu;
  };
  ClickAt(bar, arrow);
  ASSERT_TRUE(Until(menuIsOpen));
  const std::vector<COLORREF> pressed = arrowPixels();
  ClickAt(bar, arrow);  // closes the menu, and opens it anew
  ASSERT_TRUE(Until(menuIsOpen));
  EXPECT_TRUE(arrowPixels() == pressed);
  PressKey(VK_ESCAPE);
  EXPECT_TRUE(Until([&] { return !menuIsOpen() && arrowPixels() != pressed; }));

  // A click on another button closes the menu and is that button's, however short it is.
  ClickAt(bar, arrow);
  ASSERT_TRUE(Until(menuIsOpen));
  MovePointer([bar] {
    POINT newSnippet{121, 12};
    ClientToScreen(bar, &newSnippet);
    return newSnippet;
  }());
  PressMouse();
  ReleaseMouse();
  EXPECT_TRUE(Until([&] { return SendMessageA(List(), LB_GETCOUNT, 0, 0) == 4; }));
}

TEST_F(MainWindowTest, TheNextDescriptionIsShownFromItsStartAndCannotBeUndone) {
  Snippet tall = Named("one");
  tall.Description = "a\r\nfew\r\nlines\r\nmore\r\nthan\r\nfit";
  Snippet wide = Named("two");
  wide.Description = std::string(9000, 'w');
  Snippet next = Named("three");
  next.Description = std::string(9000, 'n') + "\r\nand\r\nsome\r\nmore\r\nlines";
  folder_.Write("Numbers.bns", WriteBns(std::vector{tall, wide, next}));
  Open();
  for (const Snippet* snippet : {&wide, &next}) {
    SCOPED_TRACE(snippet->Name);
    SetFocus(Description());
    SendMessageA(Description(), WM_CHAR, 'x', 0);
    SendMessageA(Description(), EM_LINESCROLL, 6000, 3);
    SetFocus(List());
    PressKey(VK_DOWN);
    ASSERT_TRUE(Until([&] { return WindowText(Description()) == snippet->Description; }));
    EXPECT_EQ(SendMessageA(Description(), EM_GETFIRSTVISIBLELINE, 0, 0), 0);
    EXPECT_EQ((GetWindowLongA(Description(), GWL_STYLE) & WS_VSCROLL) != 0, snippet == &next);
    const auto corner = SendMessageA(Description(), EM_POSFROMCHAR, 0, 0);
    EXPECT_GE(static_cast<short>(LOWORD(corner)), 0);
    EXPECT_LT(LOWORD(corner), 20);
    EXPECT_EQ(SendMessageA(Description(), EM_GETSEL, 0, 0), 0);
    EXPECT_EQ(SendMessageA(Description(), EM_GETMODIFY, 0, 0), 0);
    EXPECT_EQ(SendMessageA(Description(), EM_CANUNDO, 0, 0), 0);
    SendMessageA(Description(), WM_UNDO, 0, 0);
    EXPECT_EQ(WindowText(Description()), snippet->Description);
  }
}

TEST_F(MainWindowTest, TheNameBoxGoesWithItsRowOrTakesTheName) {
  std::vector<Snippet> many;
  for (int i = 0; i < 90; ++i) many.push_back(Named("n" + std::to_string(i)));
  folder_.Write("Numbers.bns", WriteBns(many));
  Open();
  const auto liesOnRow = [&](int row) {
    RECT line{};
    SendMessageA(List(), LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&line));
    MapWindowPoints(List(), window_.hWnd(), reinterpret_cast<POINT*>(&line), 2);
    return IsWindowVisible(NameBox()) != 0 && PlaceInParent(NameBox()).top == line.top - 1;
  };
  ClickRow(3);
  ASSERT_TRUE(Until([&] { return WindowText(Code()) == "'n3"; }));
  PressKey(VK_F2);
  ASSERT_TRUE(Until([&] { return GetFocus() == NameBox() && liesOnRow(3); }));
  TypeText("drei");
  SendMessageA(List(), LB_SETTOPINDEX, 2, 0);
  EXPECT_TRUE(Until([&] { return liesOnRow(3); }));
  SendMessageA(List(), LB_SETTOPINDEX, 40, 0);
  EXPECT_TRUE(Until([&] { return ListBoxText(List(), 3) == "drei" && GetFocus() == List(); }));
  EXPECT_EQ(SendMessageA(List(), LB_GETTOPINDEX, 0, 0), 40) << "the row changes where it is, out of sight";
  SendMessageA(List(), LB_SETTOPINDEX, 0, 0);
  ClickRow(5);
  ASSERT_TRUE(Until([&] { return WindowText(Code()) == "'n5"; }));
  PressKey(VK_F2);
  ASSERT_TRUE(Until([&] { return GetFocus() == NameBox(); }));
  TypeText("drei");
  ASSERT_TRUE(Until([&] { return WindowText(NameBox()) == "drei"; }));
  SendMessageA(List(), LB_SETTOPINDEX, 40, 0);
  EXPECT_TRUE(Until([&] { return messages_.size() == 1 && GetFocus() == NameBox() && liesOnRow(5); }));
}

TEST_F(MainWindowTest, TheSaveButtonsTipTellsWhereASaveOfARenamedLibraryGoes) {
  Open();
  PressKey(VK_F2, {VK_SHIFT});
  ASSERT_TRUE(Until([&] { return GetFocus() == Control(frmAddIn::kFileNameId); }));
  TypeText("Zahlen");
  PressKey(VK_RETURN);
  ASSERT_TRUE(Until([&] { return folder_.Has("Zahlen.bns") && GetFocus() == List(); }));
  PointAt(Control(frmAddIn::kMainBarId), {36, 12});
  const std::string tip = "Save Library: " + folder_.File("Numbers.bns");
  EXPECT_TRUE(Until([&] { return IsWindowVisible(FindWindowA("frmTip", tip.c_str())) != 0; }));
}

TEST_F(MainWindowTest, ATornOffMenuFollowsTheEditor) {
  const ComApartment apartment;
  Open();
  ClickAt(Code(), {60, 40}, 1, MouseButton::Right);
  const auto menu = [] { return FindWindowA("frmMenu", "Edit"); };
  const auto undoes = [&] {
    const auto items = AccessibleClient(menu()).Children();
    return !std::ranges::find(items, "Undo", &AccessibleChild::name)->Has(STATE_SYSTEM_UNAVAILABLE);
  };
  ASSERT_TRUE(Until([&] { return menu() != nullptr && GetCapture() == menu(); }));
  const Rect docked = PlaceOf(menu());
  ASSERT_TRUE(DragBy(menu(), {docked.left + 40, docked.top + 3}, {0, 80}, [this] { Answer(); }));
  EXPECT_FALSE(undoes());
  PressKey('E', {VK_CONTROL});
  TypeText("x");
  EXPECT_TRUE(Until(undoes));
  PressKey('K', {VK_CONTROL});
  EXPECT_TRUE(Until([&] { return !undoes(); }));
}

TEST_F(MainWindowTest, AFirstStartHasTheButtonsOfTheDesignWithTheirKeys) {
  const ComApartment apartment;
  for (int time = 0; time < 2; ++time) {  // a window that is made again has its buttons once as well
    Open();
    const auto buttons = AccessibleClient(Control(frmAddIn::kMainBarId)).Children();
    ASSERT_EQ(buttons.size(), 17U);
    EXPECT_FALSE(buttons[12].Has(STATE_SYSTEM_PRESSED));
    std::string keys;
    for (const AccessibleChild& button : buttons) keys += button.shortcut + ' ';
    EXPECT_EQ(keys,
              "Ctrl+Shift+N Ctrl+S Shift+F2  Ctrl+Enter Ctrl+Shift+Enter  Ctrl+N Ctrl+E   F9 Ctrl+T  "
              "F1 Ctrl+F1  ");
    const auto editButtons = AccessibleClient(Control(frmAddIn::kEditBarId)).Children();
    ASSERT_EQ(editButtons.size(), 3U);
    EXPECT_TRUE(editButtons[2].Has(STATE_SYSTEM_PRESSED));
    PostMessageA(window_.hWnd(), WM_CLOSE, 0, 0);
    ASSERT_TRUE(Until([&] { return window_.hWnd() == nullptr; }));
  }
}

TEST_F(MainWindowTest, ATinyWindowKeepsItsLayoutAndAGrownOneFillsIt) {
  Open();
  const auto codeSize = [&] { return ClientSize(Control(frmAddIn::kCodeId)); };
  SetWindowPos(window_.hWnd(), nullptr, 0, 0, 700, 500, SWP_NOZORDER);
  const Size before = codeSize();
  SetWindowPos(window_.hWnd(), nullptr, 0, 0, 120, 90, SWP_NOZORDER);
  EXPECT_EQ(codeSize(), before);
  SetWindowPos(window_.hWnd(), nullptr, 0, 0, 800, 600, SWP_NOZORDER);
  EXPECT_EQ(codeSize(), (Size{before.width + 100, before.height + 100}));
}

TEST_F(MainWindowTest, FindGoesFromAnyLibraryToTheNextPlaceAndTheNextSnippet) {
  const Snippet first{"Fill twice", "", "Sub A\r\n  Fill a\r\n  Fill b", ""};
  const Snippet second{"Other", "", "fill c", "about a #tag"};
  folder_.Write("Words.bns", WriteBns(std::vector{first, second}));
  folder_.Write("Broken.bns", "no library");
  Open();
  const HWND palette = Find("fill");
  EXPECT_EQ(FoundRows(palette).at(0), ">Fill twice - Words, in the name");
  EXPECT_EQ(WindowText(GetDlgItem(palette, frmFind::kStatusId)), "2 snippets - cannot be read: Broken");
  const auto preview = [&] {  // made a moment after the list is seen
    return GetDlgItem(GetDlgItem(palette, frmFind::kPreviewId), BnRichEdit::kControlId);
  };
  EXPECT_TRUE(Until([&] { return WindowText(preview()) == first.Code && ClientSize(preview()).height > 0; }));
  EXPECT_EQ(WindowText(GetWindow(preview(), GW_HWNDPREV)), "Preview") << "what names it to screen readers";
  Variant selected;
  AccessibleClient(GetDlgItem(palette, frmFind::kListId))->get_accSelection(selected.Put());
  EXPECT_TRUE(selected.Is(1));

  PressKey(VK_DOWN);
  PressKey(VK_RETURN);
  ASSERT_TRUE(Until([&] { return IsForeground(window_.hWnd()) && SelectedCode() == "fill"; }));
  EXPECT_EQ(WindowText(Code()), second.Code);
  PressKey(VK_F3, {VK_SHIFT});
  EXPECT_TRUE(Until([&] { return WindowText(Code()) == first.Code && CaretLine() == 2; }));

  // From the code, what is selected there is looked for in it first.
  EXPECT_EQ(FoundRows(Find("")).at(1), ">Fill a - line 2, in this snippet");
  PressKey('C', {VK_CONTROL});
  EXPECT_TRUE(Until([&] { return ClipboardText(window_.hWnd()) == first.Code; }));
  PressKey(VK_DOWN);
  // Other libraries arrive: what the user has selected stays so.
  folder_.Write("Arrives.bns", WriteBns(std::vector{second}));
  SendMessageA(palette, WM_ACTIVATE, WA_INACTIVE, 0);
  SendMessageA(palette, WM_ACTIVATE, WA_ACTIVE, 0);
  EXPECT_TRUE(Until([&] { return FoundRows(palette).size() == 7; }));
  EXPECT_EQ(FoundRows(palette).at(2), ">Fill b - line 3, in this snippet");
  PressKey(VK_RETURN);
  EXPECT_TRUE(Until([&] { return GetFocus() == Code() && CaretLine() == 2 && SelectedCode() == "Fill"; }));
  // What was looked for without going there is gone to next.
  SetFocus(List());
  Find("code:c");
  PostMessageA(palette, WM_CLOSE, 0, 0);
  EXPECT_TRUE(Until([&] { return IsForeground(window_.hWnd()); }));
  PressKey(VK_F3);
  EXPECT_TRUE(Until([&] { return WindowText(Code()) == second.Code && SelectedCode() == "c"; }));
  EXPECT_TRUE(messages_.empty());
}

TEST_F(MainWindowTest, FindSeesEditsAndTagsAndKeepsItsPlace) {
  folder_.Write("Words.bns", WriteBns(std::vector{Snippet{"Word", "", "'word", "a #tag and #other"}}));
  Open();
  PressKey('E', {VK_CONTROL});
  TypeText("unsaved ");
  ASSERT_TRUE(Until([&] { return WindowText(Code()).starts_with("unsaved "); }));
  SetFocus(List());
  PressKey(VK_F2);
  ASSERT_TRUE(Until([&] { return GetFocus() == NameBox(); }));
  TypeText("New");
  const HWND palette = Find("unsaved");
  const std::vector<std::string> edited{">New - Numbers, in the code, line 1"};
  EXPECT_EQ(FoundRows(palette), edited);
  // A window that is put away takes the palette along, and what was read for it is let go of.
  window_.Hide();
  EXPECT_NE(KillTimer(palette, frmFind::kForgetTimer), 0);
  SendMessageA(palette, WM_TIMER, frmFind::kForgetTimer, 0);
  EXPECT_TRUE(FoundRows(palette).empty());
  window_.Show();
  EXPECT_TRUE(Until([&] { return FoundRows(palette) == edited; }));
  Find("");

  PressKey('G', {VK_CONTROL});
  EXPECT_TRUE(Until([&] { return FoundRows(palette).size() == 2; }));
  PressKey(VK_DOWN);
  PressKey(VK_RETURN);
  const std::vector<std::string> word{">Word - Words, in the description"};
  EXPECT_TRUE(Until([&] { return FoundRows(palette) == word; }));
  // The file goes while the palette is open.
  DeleteFileA(folder_.File("Words.bns").c_str());
  PressKey(VK_RETURN);
  EXPECT_TRUE(Until([&] {
    return WindowText(GetDlgItem(palette, frmFind::kStatusId)).starts_with("\"Word\" is no longer in Words.");
  }));

  SetWindowPos(palette, nullptr, 40, 50, 500, 400, SWP_NOZORDER);
  PressKey(VK_ESCAPE);
  EXPECT_TRUE(Until([&] { return GetWindowTextLengthA(GetDlgItem(palette, frmFind::kFieldId)) == 0; }));
  EXPECT_NE(IsWindowVisible(palette), 0);
  PressKey(VK_ESCAPE);
  EXPECT_TRUE(Until([&] { return IsForeground(window_.hWnd()); }));
  window_.Unload();
  ASSERT_TRUE(window_.Show() && Until([&] { return IsForeground(window_.hWnd()); }));
  EXPECT_EQ(PlaceOf(Find("")), (Rect{40, 50, 500, 400}));
}

TEST_F(MainWindowTest, AKeyThatNoProgramNeedsShowsThePaletteFromAnywhere) {
  Open();
  const HWND palette = Find("");
  {
    Driver driver([] {
      const HWND dialog = WaitForWindow("System-wide Key");
      const auto choose = [&](char key, BYTE held) {
        SendMessageA(GetDlgItem(dialog, frmFindKey::kKeyId), HKM_SETHOTKEY, MAKEWORD(key, held), 0);
        SendMessageA(dialog, WM_COMMAND, IDOK, 0);
      };
      choose('C', HOTKEYF_CONTROL);
      EXPECT_TRUE(
          WindowText(GetDlgItem(dialog, frmFindKey::kReasonId)).starts_with("Most programs use Ctrl"));
      choose('Y', HOTKEYF_CONTROL | HOTKEYF_SHIFT);
    });
    SendMessageA(palette, WM_COMMAND, frmFind::kSystemKey, 0);
  }
  // Now, and after the next start.
  for (const bool again : {false, true}) {
    PressKey(VK_ESCAPE);
    ASSERT_TRUE(Until([&] { return FindVisibleWindow("Find Snippets") == nullptr; }));
    if (again) window_.Unload();
    ASSERT_TRUE(window_.Show() && Until([&] { return IsForeground(window_.hWnd()); }));
    PressKey('Y', {VK_CONTROL, VK_SHIFT});
    EXPECT_TRUE(Until([] { return IsForeground(FindVisibleWindow("Find Snippets")); }));
  }
  // A key that programs need may have been stored elsewhere.
  window_.Unload();
  settings_.SaveMore("FindKey", HotKey{'C', HotKey::kControl}.Text());
  ASSERT_TRUE(window_.Show());
  EXPECT_NE(RegisterHotKey(nullptr, 1, MOD_CONTROL, 'C'), 0);
  UnregisterHotKey(nullptr, 1);
}

}  // namespace
}  // namespace snip::test
