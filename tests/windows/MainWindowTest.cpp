#include <gtest/gtest.h>
#include <richedit.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "library/BnsFormat.h"
#include "library/LibraryFolder.h"
#include "platform/ScreenTwips.h"
#include "platform/Win32Text.h"
#include "tests/support/AccessibleClient.h"
#include "tests/support/TestDesktop.h"
#include "tests/support/TestRegistry.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {
namespace {

Snippet Named(const std::string& name) {
  return {.Name = name, .Attachment = "", .Code = "'" + name, .Description = "about " + name};
}

/// The real window with real messages; only the message box is answered by the test.
class MainWindowTest : public testing::Test {
 protected:
  void SetUp() override {
    folder_.Write("Numbers.bns", WriteBns(std::vector{Named("one"), Named("two"), Named("three")}));
  }

  void Open() {
    ASSERT_TRUE(window_.Show());
    ASSERT_TRUE(WaitUntil([&] { return IsForeground(window_.hWnd()); }));
  }

  HWND Control(int id) const { return FindControl(window_.hWnd(), id); }
  HWND List() const { return Control(frmAddIn::kListId); }
  HWND Files() const { return Control(frmAddIn::kFilesId); }
  HWND Description() const { return Control(frmAddIn::kDescriptionId); }
  HWND NameBox() const { return Control(frmAddIn::kNameId); }
  HWND Code() const { return GetDlgItem(Control(frmAddIn::kCodeId), BnRichEdit::kControlId); }

  std::string Row(int row) const {
    std::string text(
        static_cast<std::size_t>(SendMessageA(List(), LB_GETTEXTLEN, static_cast<WPARAM>(row), 0)), '\0');
    SendMessageA(List(), LB_GETTEXT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(text.data()));
    return text;
  }
  int Selected() const { return static_cast<int>(SendMessageA(List(), LB_GETCURSEL, 0, 0)); }

  void ClickRow(int row) {
    RECT place{};
    SendMessageA(List(), LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    ClickAt(List(), {place.left + 20, (place.top + place.bottom) / 2});
  }

  /// Handles the messages of the window and its accelerators as the program's own loop does.
  bool Until(const std::function<bool()>& condition) {
    return WaitUntil(condition, 10000, [this] {
      AnswerMessages([this](MSG& message) { return window_.PreTranslate(message); });
    });
  }

  TemporaryFolder folder_;
  LibraryFolder store_{folder_.path()};
  std::vector<std::string> messages_;
  MessageResult answer_ = MessageResult::Ok;
  TestRegistry testRegistry_;
  ShowMessageFunction showMessage_ = [this](const std::string& prompt, int, const std::string& title) {
    EXPECT_EQ(title, prompt.starts_with("This file was saved") ? "" : "Brennic Snipstore 2.x");
    messages_.push_back(prompt);
    return answer_;
  };
  Registry32 registry_{showMessage_};
  SoundEffects sounds_{registry_};
  SettingsStore settings_{registry_};
  CaptionPainter captions_;
  frmAddIn window_{{.store = store_,
                    .settings = settings_,
                    .sounds = sounds_,
                    .caption = captions_,
                    .showMessage = showMessage_,
                    .unloaded = [] {},
                    .hidden = [] {}}};
};

TEST_F(MainWindowTest, OpensTheFirstLibraryAndShowsItsFirstSnippet) {
  Open();
  EXPECT_EQ(WindowText(window_.hWnd()), "Brennic Snipstore 2.x");
  EXPECT_EQ(WindowText(Files()), "Numbers");
  EXPECT_EQ(SendMessageA(Files(), CB_GETCOUNT, 0, 0), 2);
  EXPECT_EQ(SendMessageA(List(), LB_GETCOUNT, 0, 0), 3);
  EXPECT_EQ(Selected(), 0);
  EXPECT_EQ(WindowText(Code()), "'one");
  EXPECT_EQ(WindowText(Description()), "about one");
  EXPECT_TRUE(messages_.empty());
}

TEST_F(MainWindowTest, AnEmptyFolderIsToldAndNothingCanBeEdited) {
  DeleteFileA(folder_.File("Numbers.bns").c_str());
  Open();
  EXPECT_EQ(messages_, std::vector<std::string>{"There are no BNS files in the BnSnipstore directory."});
  EXPECT_EQ(SendMessageA(Files(), CB_GETCOUNT, 0, 0), 0);
  PressKey('N', {VK_CONTROL});
  PressKey('S', {VK_CONTROL});
  PressKey(VK_TAB);  // keys come one after the other
  ASSERT_TRUE(Until([&] { return GetFocus() == Description(); }));
  EXPECT_EQ(SendMessageA(List(), LB_GETCOUNT, 0, 0), 0);
  EXPECT_FALSE(folder_.Has(".bns"));
}

TEST_F(MainWindowTest, ClickingARowShowsItsSnippet) {
  Open();
  ClickRow(2);
  EXPECT_TRUE(Until([&] { return WindowText(Code()) == "'three"; }));
  EXPECT_EQ(WindowText(Description()), "about three");
  PressKey(VK_UP);
  EXPECT_TRUE(Until([&] { return WindowText(Code()) == "'two"; }));
}

TEST_F(MainWindowTest, TypingInTheListGoesToTheNameThatBeginsSo) {
  Open();
  struct Typing {
    const char* typed;
    const char* code;
  };
  for (const Typing& typing :
       {Typing{"t", "'two"}, {"ttt", "'three"}, {"tH", "'three"}, {"q", "'three"}, {"o", "'one"}}) {
    SetFocus(Description());
    AnswerMessages([this](MSG& message) { return window_.PreTranslate(message); });
    PressKey(VK_TAB, {VK_SHIFT});
    ASSERT_TRUE(Until([&] { return GetFocus() == List(); }));
    TypeText(typing.typed);
    EXPECT_TRUE(Until([&] { return WindowText(Code()) == typing.code; }))
        << typing.typed << WindowText(Code());
  }
}

TEST_F(MainWindowTest, AnEditIsTakenWhenTheFieldIsLeftAndWrittenOnSave) {
  Open();
  ClickCentre(Code(), 2);  // a double click starts editing
  ASSERT_TRUE(Until([&] { return (GetWindowLongA(Code(), GWL_STYLE) & ES_READONLY) == 0; }));
  PressKey(VK_HOME, {VK_CONTROL});
  TypeText("x = 1");
  PressKey(VK_RETURN);
  ASSERT_TRUE(Until([&] { return WindowText(Code()) == "x = 1\r\n'one"; })) << WindowText(Code());
  ClickRow(1);
  ASSERT_TRUE(Until([&] { return WindowText(Code()) == "'two"; }));
  EXPECT_NE(GetWindowLongA(Code(), GWL_STYLE) & ES_READONLY, 0);
  PressKey('S', {VK_CONTROL});
  Snippet first = Named("one");
  first.Code = "x = 1\r\n'one";
  const std::string expected = WriteBns(std::vector{first, Named("two"), Named("three")});
  EXPECT_TRUE(Until([&] { return folder_.Read("Numbers.bns") == expected; })) << folder_.Read("Numbers.bns");
}

TEST_F(MainWindowTest, AnEditStaysInProgressWhileAnotherWindowHasTheFocus) {
  Open();
  PressKey('E', {VK_CONTROL});
  ASSERT_TRUE(Until([&] { return GetFocus() == Code(); }));
  TypeText("y");
  ASSERT_TRUE(Until([&] { return WindowText(Code()) == "y'one"; }));
  const HWND other = CreateWindowExA(0, "STATIC", "another", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 600, 10, 200,
                                     100, nullptr, nullptr, nullptr, nullptr);
  ASSERT_TRUE(Until([&] { return IsForeground(other); }));
  DestroyWindow(other);
  SetForegroundWindow(window_.hWnd());
  EXPECT_TRUE(Until([&] { return GetFocus() == Code(); }));
  EXPECT_EQ(GetWindowLongA(Code(), GWL_STYLE) & ES_READONLY, 0);
}

TEST_F(MainWindowTest, TypingADescriptionChangesTheSnippet) {
  Open();
  SetFocus(Description());
  TypeText("All ");
  ASSERT_TRUE(Until([&] { return WindowText(Description()) == "All about one"; }));
  PressKey('S', {VK_CONTROL});
  EXPECT_TRUE(
      Until([&] { return folder_.Read("Numbers.bns").find("All about one\r\n(,)") != std::string::npos; }));
}

TEST_F(MainWindowTest, LookingAtSnippetsChangesNothing) {
  using namespace std::string_literals;
  const std::string odd =
      "BNS2.0\r\na\0b\r\n\r\nd\0e\nf\rg\r\n(,)\r\nlone\rCR\nLF \0 \x81\r\n(.)\r\nsecond\r\n\r\nx\r\n(,)\r\ny\r\n...\r\n"s;
  folder_.Write("Numbers.bns", odd);
  Open();
  PressKey(VK_DOWN);
  ASSERT_TRUE(Until([&] { return WindowText(Code()) == "y"; }));
  PressKey(VK_UP);
  ASSERT_TRUE(Until([&] { return WindowText(Code()) != "y"; }));
  PressKey(VK_F2);
  ASSERT_TRUE(Until([&] { return GetFocus() == NameBox(); }));
  PressKey(VK_RETURN);  // the name as it is
  ASSERT_TRUE(Until([&] { return GetFocus() == List(); }));
  DeleteFileA(folder_.File("Numbers.bns").c_str());
  PressKey('S', {VK_CONTROL});
  EXPECT_TRUE(Until([&] { return folder_.Read("Numbers.bns") == odd; })) << folder_.Read("Numbers.bns");
}

TEST_F(MainWindowTest, RenamingInPlace) {
  Open();
  PressKey(VK_F2);
  ASSERT_TRUE(Until([&] { return GetFocus() == NameBox(); }));
  EXPECT_EQ(WindowText(NameBox()), "one");
  TypeText("eins");
  PressKey(VK_RETURN);
  EXPECT_TRUE(Until([&] { return Row(0) == "eins"; }));
  EXPECT_EQ(Selected(), 0);
  EXPECT_EQ(IsWindowVisible(NameBox()), 0);

  PressKey(VK_F2);
  ASSERT_TRUE(Until([&] { return GetFocus() == NameBox(); }));
  TypeText("TWO");
  PressKey(VK_RETURN);
  ASSERT_TRUE(Until([&] { return messages_.size() == 1; }));
  EXPECT_TRUE(messages_[0].starts_with("A snippet in this library already has this name."));
  EXPECT_EQ(GetFocus(), NameBox());
  PressKey(VK_ESCAPE);
  EXPECT_TRUE(Until([&] { return IsWindowVisible(NameBox()) == 0; }));
  EXPECT_EQ(Row(0), "eins");
  EXPECT_EQ(GetFocus(), List());
}

TEST_F(MainWindowTest, NewAndDeletedSnippets) {
  Open();
  PressKey('N', {VK_CONTROL});
  ASSERT_TRUE(Until([&] { return SendMessageA(List(), LB_GETCOUNT, 0, 0) == 4 && GetFocus() == NameBox(); }));
  TypeText("four");
  PressKey(VK_RETURN);
  ASSERT_TRUE(Until([&] { return Row(3) == "four"; }));
  EXPECT_EQ(WindowText(Code()), "'Insert code here.");
  ClickRow(1);
  ASSERT_TRUE(Until([&] { return Selected() == 1; }));
  PressKey(VK_DELETE);
  EXPECT_TRUE(Until([&] { return SendMessageA(List(), LB_GETCOUNT, 0, 0) == 3; }));
  EXPECT_EQ(Row(1), "three");
  EXPECT_EQ(Selected(), 0);
  const auto locked = [&] { return (GetWindowLongA(Description(), GWL_STYLE) & ES_READONLY) != 0; };
  ClickRow(2);
  ASSERT_TRUE(Until([&] { return Selected() == 2; }));
  PressKey(VK_DELETE);
  EXPECT_TRUE(Until([&] { return Selected() == -1 && locked(); })) << "whose description would be typed?";
  ClickRow(0);
  EXPECT_TRUE(Until([&] { return Selected() == 0 && !locked(); }));
}

TEST_F(MainWindowTest, ClosingAsksWhetherToSaveAndSavesOnYes) {
  for (const MessageResult answer : {MessageResult::No, MessageResult::Yes}) {
    folder_.Write("Numbers.bns", WriteBns(std::vector{Named("one")}));
    Open();
    SetFocus(Description());
    TypeText("z");
    ASSERT_TRUE(Until([&] { return WindowText(Description()) == "zabout one"; }));
    answer_ = answer;
    EXPECT_TRUE(messages_.empty()) << "a window that is made again starts from its files";
    PostMessageA(window_.hWnd(), WM_CLOSE, 0, 0);
    ASSERT_TRUE(Until([&] { return window_.hWnd() == nullptr; }));
    EXPECT_EQ(messages_, std::vector<std::string>{"Save changes to 'Numbers'?"});
    const bool saved = folder_.Read("Numbers.bns").find("zabout") != std::string::npos;
    EXPECT_EQ(saved, answer == MessageResult::Yes);
    messages_.clear();
  }
}

TEST_F(MainWindowTest, EscapeAndEnterHarmNothingWhereverTheFocusIs) {
  Open();
  const std::string file = folder_.Read("Numbers.bns");
  for (const HWND control : {List(), Files(), Description(), Code()}) {
    SCOPED_TRACE(GetDlgCtrlID(control));
    SetFocus(control);
    PressKey(VK_ESCAPE);
    if (control != Description()) PressKey(VK_RETURN);
    PressKey(VK_TAB);  // keys come one after the other: when this one has had its effect, so had the others
    ASSERT_TRUE(Until([&] { return window_.hWnd() == nullptr || GetFocus() != control; }));
    ASSERT_NE(window_.hWnd(), nullptr);
    EXPECT_NE(Description(), nullptr);
    EXPECT_NE(Code(), nullptr);
  }
  PressKey('E', {VK_CONTROL});
  ASSERT_TRUE(Until([&] { return (GetWindowLongA(Code(), GWL_STYLE) & ES_READONLY) == 0; }));
  PressKey(VK_ESCAPE);
  TypeText("k");
  EXPECT_TRUE(Until([&] { return WindowText(Code()) == "k'one"; }));
  EXPECT_EQ(folder_.Read("Numbers.bns"), file);
  EXPECT_TRUE(messages_.empty());
}

TEST_F(MainWindowTest, TabGoesRoundAllFieldsAndStaysInTheEditor) {
  Open();
  SetFocus(List());
  for (const HWND next : {Description(), Control(frmAddIn::kAttachId), Code(), Files(), List()}) {
    PressKey(VK_TAB);
    ASSERT_TRUE(Until([&] { return GetFocus() == next; })) << GetDlgCtrlID(next);
  }
  for (const HWND next : {Files(), Code(), Control(frmAddIn::kAttachId), Description(), List()}) {
    PressKey(VK_TAB, {VK_SHIFT});
    ASSERT_TRUE(Until([&] { return GetFocus() == next; })) << GetDlgCtrlID(next);
  }
  PressKey('E', {VK_CONTROL});
  ASSERT_TRUE(Until([&] { return GetFocus() == Code(); }));
  PressKey(VK_TAB);
  EXPECT_TRUE(Until([&] { return WindowText(Code()) == "\t'one"; }))
      << WindowText(Code()) << GetDlgCtrlID(GetFocus());
  for (const HWND control : {List(), Files(), Description()}) {
    EXPECT_EQ(GetWindowLongA(control, GWL_STYLE) & WS_TABSTOP, 0);
  }
}

TEST_F(MainWindowTest, MinimisingKeepsTheEditInProgress) {
  Open();
  PressKey('E', {VK_CONTROL});
  ASSERT_TRUE(Until([&] { return GetFocus() == Code(); }));
  TypeText("q");
  ASSERT_TRUE(Until([&] { return WindowText(Code()) == "q'one"; }));
  SendMessageA(window_.hWnd(), WM_SYSCOMMAND, SC_MINIMIZE, 0);
  ASSERT_TRUE(Until([&] { return IsIconic(window_.hWnd()) != 0; }));
  SendMessageA(window_.hWnd(), WM_SYSCOMMAND, SC_RESTORE, 0);
  EXPECT_TRUE(Until([&] { return GetFocus() == Code(); }));
  EXPECT_EQ(GetWindowLongA(Code(), GWL_STYLE) & ES_READONLY, 0);
}

TEST_F(MainWindowTest, CopyingPutsTheCodeOnTheClipboard) {
  Snippet accents = Named("one");
  accents.Code =
      "' Gr\xFC\xDF"
      "e\r\nBeep";
  folder_.Write("Numbers.bns", WriteBns(std::vector{accents, Named("two")}));
  Open();
  const auto clipboard = [&] {
    if (OpenClipboard(window_.hWnd()) == 0) return std::string("(not open)");
    const HANDLE data = GetClipboardData(CF_TEXT);
    const auto* text = data == nullptr ? nullptr : static_cast<const char*>(GlobalLock(data));
    std::string copied = text == nullptr ? "(no text)" : text;
    if (text != nullptr) GlobalUnlock(data);
    CloseClipboard();
    return copied;
  };
  PressKey('C', {VK_CONTROL, VK_SHIFT});
  EXPECT_TRUE(Until([&] { return clipboard() == accents.Code; }));
  PressKey(VK_DOWN);
  ASSERT_TRUE(Until([&] { return WindowText(Code()) == "'two"; }));
  PressKey('C', {VK_CONTROL});
  EXPECT_TRUE(Until([&] { return clipboard() == "'two"; }));
  EXPECT_TRUE(messages_.empty());
}

TEST_F(MainWindowTest, ATypedNameIsKeptByWhateverComesNext) {
  Open();
  PressKey('N', {VK_CONTROL});
  ASSERT_TRUE(Until([&] { return GetFocus() == NameBox(); }));
  TypeText("precious");
  PressKey('N', {VK_CONTROL});
  ASSERT_TRUE(Until([&] { return SendMessageA(List(), LB_GETCOUNT, 0, 0) == 5; }));
  EXPECT_EQ(Row(3), "precious");
  TypeText("precious");  // taken
  ASSERT_TRUE(Until([&] { return WindowText(NameBox()) == "precious"; }));
  PostMessageA(window_.hWnd(), WM_CLOSE, 0, 0);
  ASSERT_TRUE(Until([&] { return messages_.size() == 1; }));
  EXPECT_TRUE(messages_[0].starts_with("A snippet in this library already has this name."));
  EXPECT_NE(window_.hWnd(), nullptr) << "the user is back in the box";
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
}

TEST_F(MainWindowTest, TheEndOfTheSessionOffersToSave) {
  Open();
  SetFocus(Description());
  TypeText("z");
  ASSERT_TRUE(Until([&] { return WindowText(Description()) == "zabout one"; }));
  answer_ = MessageResult::Yes;
  EXPECT_EQ(SendMessageA(window_.hWnd(), WM_QUERYENDSESSION, 0, 0), TRUE);
  EXPECT_EQ(messages_, std::vector<std::string>{"Save changes to 'Numbers'?"});
  EXPECT_NE(folder_.Read("Numbers.bns").find("zabout one"), std::string::npos);
  SendMessageA(window_.hWnd(), WM_ENDSESSION, TRUE, 0);
  EXPECT_EQ(window_.hWnd(), nullptr);
}

TEST_F(MainWindowTest, LinesOfAMegabyteAreShownAndKept) {
  Snippet huge = Named(std::string(300, 'n'));
  huge.Description = std::string(1000000, 'd') + "\r\na\r\nfew\r\nlines\r\nmore\r\nthan\r\nfit";
  huge.Code = std::string(1000000, 'c') + "\r\nEnd";
  const std::string file = WriteBns(std::vector{huge, Named("two")});
  folder_.Write("Numbers.bns", file);
  Open();
  EXPECT_EQ(WindowText(Description()), huge.Description);
  EXPECT_EQ(SendMessageA(Description(), EM_GETFIRSTVISIBLELINE, 0, 0), 0);
  PressKey(VK_DOWN);
  ASSERT_TRUE(Until([&] { return WindowText(Description()) == "about two"; }));
  DeleteFileA(folder_.File("Numbers.bns").c_str());
  PressKey('S', {VK_CONTROL});
  EXPECT_TRUE(Until([&] { return folder_.Read("Numbers.bns") == file; }));
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

TEST_F(MainWindowTest, AltF4ClosesWhereverTheFocusIs) {
  for (const int id : {frmAddIn::kListId, frmAddIn::kFilesId, frmAddIn::kDescriptionId, frmAddIn::kCodeId}) {
    SCOPED_TRACE(id);
    Open();
    SetFocus(Control(id));
    PressKey(VK_F4, {VK_MENU});
    EXPECT_TRUE(Until([&] { return window_.hWnd() == nullptr; }));
  }
}

TEST_F(MainWindowTest, SwitchingLibrariesByMouseAndTheLongestLibrary) {
  std::vector<Snippet> many;
  for (std::size_t i = 0; i < Library::kMaxSnippets; ++i) many.push_back(Named("n" + std::to_string(i)));
  folder_.Write("Zillion.bns", WriteBns(many));
  Open();
  const auto entry =
      SendMessageA(Files(), CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>("Zillion"));
  ASSERT_GE(entry, 0);
  SetFocus(Files());
  SendMessageA(Files(), CB_SETCURSEL, static_cast<WPARAM>(entry), 0);
  SendMessageA(GetParent(Files()), WM_COMMAND, MAKEWPARAM(frmAddIn::kFilesId, CBN_SELCHANGE),
               reinterpret_cast<LPARAM>(Files()));
  EXPECT_EQ(SendMessageA(List(), LB_GETCOUNT, 0, 0), 32767);
  EXPECT_EQ(Row(32766), "n32766");
  PressKey('N', {VK_CONTROL});
  EXPECT_TRUE(Until([&] { return messages_.size() == 1; }));
  EXPECT_TRUE(messages_[0].starts_with("This library is full."));
}

TEST_F(MainWindowTest, KeysGoThroughTheOpenedChooserAndEnterTakesTheLibrary) {
  folder_.Write("Words.bns", WriteBns(std::vector{Named("word")}));
  Open();
  SetFocus(Files());
  const auto dropped = [&] { return SendMessageA(Files(), CB_GETDROPPEDSTATE, 0, 0) != 0; };
  const auto chosen = [&](LRESULT entry) {
    return Until([&] { return SendMessageA(Files(), CB_GETCURSEL, 0, 0) == entry; });
  };
  PressKey(VK_F4);
  ASSERT_TRUE(Until(dropped));
  PressKey(VK_END);
  ASSERT_TRUE(chosen(2)) << "(Browse...), on the way";
  PressKey(VK_UP);
  ASSERT_TRUE(chosen(1));
  EXPECT_EQ(Row(0), "one") << "nothing is opened on the way";
  PressKey(VK_RETURN);
  EXPECT_TRUE(Until([&] { return Row(0) == "word" && !dropped(); }));
  PressKey(VK_UP);
  EXPECT_TRUE(Until([&] { return Row(0) == "one"; })) << "closed, it shows what it goes to";
  PressKey(VK_F4);
  ASSERT_TRUE(Until(dropped));
  PressKey(VK_DOWN);
  ASSERT_TRUE(chosen(1));
  PressKey(VK_ESCAPE);
  EXPECT_TRUE(chosen(0));
  EXPECT_EQ(Row(0), "one");
}

TEST_F(MainWindowTest, AClickAfterKeysInTheOpenedChooserOpensOnce) {
  folder_.Write("Words.bns", "BNS1.0\r\nword\r\nabout it\r\n'word\r\n..\r\n");
  Open();
  SetFocus(Files());
  PressKey(VK_F4);
  ASSERT_TRUE(Until([&] { return SendMessageA(Files(), CB_GETDROPPEDSTATE, 0, 0) != 0; }));
  PressKey(VK_END);
  ASSERT_TRUE(Until([&] { return SendMessageA(Files(), CB_GETCURSEL, 0, 0) == 2; }));
  PressKey(VK_F2, {VK_SHIFT});  // renames nothing that is not open
  COMBOBOXINFO info{};
  info.cbSize = sizeof info;
  ASSERT_TRUE(GetComboBoxInfo(Files(), &info));
  const int rowHeight = static_cast<int>(SendMessageA(info.hwndList, LB_GETITEMHEIGHT, 0, 0));
  ClickAt(info.hwndList, {20, rowHeight + rowHeight / 2});
  EXPECT_TRUE(Until([&] { return Row(0) == "word"; }));
  PressKey(VK_TAB);
  EXPECT_TRUE(Until([&] { return GetFocus() != Files(); }));
  EXPECT_EQ(messages_.size(), 1U) << "that it is of the older format";
  EXPECT_FALSE(IsWindowVisible(Control(frmAddIn::kFileNameId)));
}

TEST_F(MainWindowTest, AScreenReaderCanNameEveryField) {
  const ComApartment apartment;
  Open();
  const std::vector<std::pair<HWND, std::string>> fields = {
      {List(), "Snippets"},
      // Wine names a combo box by its text, not by its label.
      {Files(), "Numbers"},
      {Control(frmAddIn::kFileNameId), "Library name"},
      {NameBox(), "Snippet name"},
      {Description(), "Description"},
      {Control(frmAddIn::kAttachId), "Attachment"}};
  for (const auto& [field, name] : fields) EXPECT_EQ(AccessibleClient(field).Child(CHILDID_SELF).name, name);
}

TEST_F(MainWindowTest, AFirstStartHasTheDesignsPlaceAndSettings) {
  const ComApartment apartment;
  for (int time = 0; time < 2; ++time) {  // a window that is made again has its buttons once as well
    Open();
    RECT place{};
    GetWindowRect(window_.hWnd(), &place);
    EXPECT_EQ(place.left, 0);
    EXPECT_EQ(place.top, 0);
    EXPECT_EQ(ScreenTwips().ToTwips({static_cast<int>(place.right), static_cast<int>(place.bottom)}),
              (Size{10800, 7200}));
    EXPECT_EQ(GetWindowLongA(window_.hWnd(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
    const auto buttons = AccessibleClient(Control(frmAddIn::kMainBarId)).Children();
    ASSERT_EQ(buttons.size(), 16U);
    EXPECT_FALSE(buttons[11].Has(STATE_SYSTEM_PRESSED));
    const auto editButtons = AccessibleClient(Control(frmAddIn::kEditBarId)).Children();
    ASSERT_EQ(editButtons.size(), 3U);
    EXPECT_TRUE(editButtons[2].Has(STATE_SYSTEM_PRESSED));
    PostMessageA(window_.hWnd(), WM_CLOSE, 0, 0);
    ASSERT_TRUE(Until([&] { return window_.hWnd() == nullptr; }));
  }
}

TEST_F(MainWindowTest, SplittersThatTheWindowHasNoRoomForStandWhereTheyFit) {
  const std::vector<std::pair<const char*, const char*>> stored = {
      {"Width", "6000"}, {"Height", "5000"}, {"LeftPane", "30000"}, {"Description", "30000"}};
  for (const auto& [name, text] : stored) {
    registry_.SaveRegSetting("Brennic", "BnSnipstore\\2.0", "Position", name, text);
  }
  Open();
  for (const int id :
       {frmAddIn::kListId, frmAddIn::kDescriptionId, frmAddIn::kCodeId, frmAddIn::kEditBarId}) {
    const Size size = ClientSize(Control(id));
    EXPECT_GT(size.height, 0) << id;
  }
}

TEST(MainMenusTest, TheItemsAreWorded) {
  const Registry32 registry{[](const std::string&, int, const std::string&) { return MessageResult::Ok; }};
  const SoundEffects sounds{registry};
  MainMenus menus(sounds, {}, {});
  menus.Fill();
  const auto captions = [](const frmMenu& menu) {
    std::vector<std::string> all;
    for (const MenuItem& item : menu.items().All()) all.push_back(item.Caption);
    return all;
  };
  using Captions = std::vector<std::string>;
  EXPECT_EQ(captions(menus.mnuModFuncs), (Captions{"Paste to Current Code Window", "Copy to Clipboard",
                                                   "Create New Module (All Snippets)"}));
  EXPECT_EQ(captions(menus.mnuSnippets), (Captions{"Rename Snippet", "-", "Edit Snippet", "Delete Snippet",
                                                   "-", "Paste to Code Window", "Copy to Clipboard"}));
  EXPECT_EQ(captions(menus.mnuAttach), (Captions{"View Attachment", "Set Attachment..."}));
  // The blanks tell the item from that of the list's menu.
  EXPECT_EQ(captions(menus.mnuEdit),
            (Captions{"Edit Snippet   ", "-", "Undo", "-", "Cut", "Copy", "Paste", "-", "Select All"}));
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

}  // namespace
}  // namespace snip::test
