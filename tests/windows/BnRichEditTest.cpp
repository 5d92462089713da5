#include "ui/editor/BnRichEdit.h"

#include <gtest/gtest.h>
#include <richedit.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/ExactTextField.h"
#include "platform/GlobalMemory.h"
#include "platform/OleColor.h"
#include "platform/OleDragSource.h"
#include "platform/Win32Text.h"
#include "tests/support/TestDesktop.h"
#include "ui/editor/PlainTextOnly.h"
#include "ui/editor/RichEditText.h"

namespace snip::test {
namespace {

/// Letters that the code page has: one byte, two or three in it, and one character in the control.
std::string Letters() {
  std::string letters;
  for (const char16_t letter : std::u16string_view(u"\u00E9\u3042\u8A9E")) {
    const std::string bytes = AnsiFromUtf16({&letter, 1});
    if (Utf16FromAnsi(bytes)[0] == letter) letters += bytes;
  }
  return letters;
}

const FontProperty kFont{.Name = "Courier New", .Size = 10};

class BnRichEditTest : public testing::Test {
 protected:
  explicit BnRichEditTest(BnRichEdit::Engine engine = BnRichEdit::Engine::RichEdit) : engine_(engine) {}
  void SetUp() override {
    other_ = CreateControl(frame_.get(), "EDIT", "", WS_VISIBLE | WS_TABSTOP, 0, 8, nullptr, {0, 0, 100, 20});
    ASSERT_TRUE(editor_.CreateIn(frame_.get(), 5, kFont));
    MoveWindow(editor_.hWnd(), 0, 20, 480, 200, TRUE);
  }

  std::string Text() const { return editor_.text().value(); }
  HWND Control() const { return GetDlgItem(editor_.hWnd(), BnRichEdit::kControlId); }

  CHARFORMAT2A FormatOfSelection() const {
    CHARFORMAT2A format{};
    format.cbSize = sizeof format;
    SendMessageA(Control(), EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
    return format;
  }
  /// What is filled in by now: asked past the field, which would fill in the rest first.
  LRESULT LengthInControl() const {
    WNDCLASSA description{};
    GetClassInfoA(nullptr, RICHEDIT_CLASSA, &description);
    GETTEXTLENGTHEX asked{GTL_NUMCHARS, CP_ACP};
    return CallWindowProcA(description.lpfnWndProc, Control(), EM_GETTEXTLENGTHEX,
                           reinterpret_cast<WPARAM>(&asked), 0);
  }
  /// Where a character of the control's is, in pixels.
  POINT PlaceOf(int character) const {
    POINTL place{};
    SendMessageA(Control(), EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&place), character);
    return {place.x, place.y};
  }
  LRESULT FirstLine() const { return SendMessageA(Control(), EM_GETFIRSTVISIBLELINE, 0, 0); }

  /// One letter for the colour of each of the control's characters from `begin` on: fore, keyword, comment or
  /// string. Blanks stay blank.
  std::string Hues(int begin, int end) {
    const int start = editor_.SelStart();
    const int length = editor_.SelLength();
    const CodeColours colours = CodeColoursOn(GetSysColor(COLOR_WINDOW), TranslateColor(editor_.foreColor()));
    const std::array hueColors{colours.fore, colours.keyword, colours.comment, colours.string};
    std::string hues;
    SendMessageA(Control(), WM_SETREDRAW, FALSE, 0);
    for (int i = begin; i < end; ++i) {
      SendMessageA(Control(), EM_SETSEL, static_cast<WPARAM>(i), i + 1);
      const COLORREF color = FormatOfSelection().crTextColor;
      const bool blank = editor_.SelText().value().find_first_not_of(" \t\r\n") == std::string::npos;
      const auto known = std::ranges::find(hueColors, color);
      hues += blank ? ' ' : "fkcs?"[known - hueColors.begin()];
    }
    SendMessageA(Control(), EM_SETSEL, static_cast<WPARAM>(start), start + length);
    SendMessageA(Control(), WM_SETREDRAW, TRUE, 0);
    return hues;
  }
  std::string Hues() { return Hues(0, editor_.TextLength()); }
  void PutOnClipboard(const std::vector<std::pair<UINT, std::string>>& contents) const {
    ASSERT_NE(OpenClipboard(frame_.get()), 0);
    EmptyClipboard();
    for (const auto& [format, data] : contents)
      SetClipboardData(format, MakeGlobal({data.c_str(), data.size() + 1}).Release());
    CloseClipboard();
  }

  const TestFrame frame_{"editor", {50, 50, 500, 300}};
  BnRichEdit::Engine engine_;
  std::vector<std::string> log_;
  std::function<void()> onDoubleClick_ = [] {};
  BnRichEdit editor_{{.gotFocus = [this] { log_.emplace_back("got focus"); },
                      .lostFocus = [this] { log_.emplace_back("lost focus"); },
                      .keyPress = [this](char key) { log_.push_back(std::string("key ") + key); },
                      .dblClick =
                          [this] {
                            log_.emplace_back("double click");
                            onDoubleClick_();
                          },
                      .mouseDown = [this](BnRichEdit::MouseButton button,
                                          POINT) { log_.push_back("button " + std::to_string(button)); },
                      .contextMenu = [this](POINT) { log_.emplace_back("menu"); }},
                     engine_};
  HWND other_ = nullptr;
};

/// In double-byte code pages the system may tell a length that would do for any entry of as many characters.
LRESULT TellDoubleLength(const Subclass::Message& message) {
  const bool asksLength = message.id == LB_GETTEXTLEN || message.id == CB_GETLBTEXTLEN;
  return message.PassOn() * (asksLength ? 2 : 1);
}

TEST_F(BnRichEditTest, ListsTellTheirEntriesAsTheyAre) {
  const std::string entry = Letters() + "x";
  for (const auto& [name, add, textOf] : {std::tuple{"LISTBOX", UINT{LB_ADDSTRING}, &ListBoxText},
                                          {"COMBOBOX", UINT{CB_ADDSTRING}, &ComboBoxText}}) {
    const HWND list = CreateControl(frame_.get(), name, "", CBS_DROPDOWNLIST, 0, 7, nullptr, {0, 0, 90, 90});
    Subclass doubled;
    ASSERT_TRUE(doubled.Start(list, &TellDoubleLength));
    SendMessageA(list, add, 0, reinterpret_cast<LPARAM>(entry.c_str()));
    EXPECT_EQ(textOf(list, 0), entry);
    EXPECT_EQ(textOf(list, 1), "");
  }
}

TEST_F(BnRichEditTest, UntouchedTextComesBackByteForByte) {
  std::string allBytes;
  for (int i = 0; i < 256; ++i) allBytes += static_cast<char>(i);
  for (const std::string& text :
       {std::string(), std::string("Dim a$\r\n\r\nEnd\r\n"), std::string("lone\rCR and\nLF"),
        std::string("a\0b\0", 4), std::string("\x80\x9F\xA0\xFF"), allBytes,
        std::string("{\\rtf1 not rich text}"), std::string(1000000, 'x')}) {
    SCOPED_TRACE(text.substr(0, 30));
    editor_.SetText(text);
    EXPECT_EQ(Text(), text);
  }
}

TEST_F(BnRichEditTest, EditedTextKeepsZeroBytesAndTheLinesOfOddLineEnds) {
  editor_.SetLocked(false);
  editor_.Focus();
  for (const auto& [text, edited] :
       {std::pair(std::string("one\r\ntwo\0end\r\n", 14), std::string("xone\r\ntwo\0end\r\n", 15)),
        std::pair(std::string("a\r\r\nb\rc\nd"), std::string("xa\r\n\r\nb\r\nc\r\nd"))}) {
    editor_.SetText(text);
    TypeText("x");
    EXPECT_TRUE(WaitUntil([&, expected = edited] { return Text() == expected; })) << Text();
  }
  DestroyWindow(Control());
  EXPECT_EQ(editor_.text(), std::nullopt);
}

TEST_F(BnRichEditTest, OnlyTextIsPastedAndWhatTheCodePageLacksIsReplaced) {
  // A letter that the code page lacks; UTF-8 lacks half a pair alone.
  const std::u16string lacking(1, GetACP() == CP_UTF8 ? u'\xD800' : u'\x05D0');
  const std::u16string put = u"Dim " + lacking;
  const auto* bytes = reinterpret_cast<const char*>(put.c_str());
  PutOnClipboard({{RegisterClipboardFormatA("Rich Text Format"), "{\\rtf1\\ansi rich}"},
                  {CF_UNICODETEXT, std::string(bytes, (put.size() + 1) * sizeof(char16_t))}});
  editor_.SetLocked(false);
  editor_.Focus();
  const std::vector<std::pair<const char*, std::function<void()>>> ways = {
      {"key", [] { PressKey('V', {VK_CONTROL}); }},
      {"message", [this] { SendMessageA(Control(), WM_PASTE, 0, 0); }},
      {"menu", [this] { editor_.ReplaceSelection(ClipboardText(frame_.get())); }},
      {"another program",
       [&] {
         SETTEXTEX how{ST_SELECTION | ST_KEEPUNDO, 1200};
         SendMessageA(Control(), EM_SETTEXTEX, reinterpret_cast<WPARAM>(&how),
                      reinterpret_cast<LPARAM>(put.c_str()));
       }},
  };
  const std::string stored = AnsiFromUtf16(put);
  for (const auto& [name, putIn] : ways) {
    SCOPED_TRACE(name);
    editor_.SetText("ab");
    editor_.SetSelection(1, 0);
    putIn();
    ASSERT_TRUE(WaitUntil([&] { return Text() != "ab"; }));
    EXPECT_EQ(Text(), "a" + stored + "b");
    EXPECT_EQ(RichEditText(Control()), Utf16FromAnsi(Text()));
    editor_.Undo();
    EXPECT_EQ(Text(), "ab");
    SendMessageA(Control(), EM_REDO, 0, 0);
    EXPECT_EQ(RichEditText(Control()), Utf16FromAnsi("a" + stored + "b"));
  }
  ExactTextField field;
  field.Attach(other_);
  SendMessageA(other_, WM_PASTE, 0, 0);
  // Past the field's own procedures, which are told in the code page.
  WNDCLASSW edit{};
  GetClassInfoW(nullptr, L"EDIT", &edit);
  std::u16string shown(stored.size() + 1, u'\0');
  const LRESULT size = CallWindowProcW(edit.lpfnWndProc, other_, WM_GETTEXT, shown.size(),
                                       reinterpret_cast<LPARAM>(shown.data()));
  shown.resize(static_cast<std::size_t>(size));
  EXPECT_EQ(field.Text(), stored);
  EXPECT_EQ(shown, Utf16FromAnsi(stored));
}

TEST_F(BnRichEditTest, ShowingLongTextsOneAfterAnotherLosesNeitherFocusNorLock) {
  const std::string longText(20000, 'a');
  editor_.SetText(longText);
  editor_.Focus();
  log_.clear();
  editor_.SetText("short");
  EXPECT_EQ(Text(), "short");
  EXPECT_TRUE(editor_.HasFocus());
  EXPECT_TRUE(log_.empty()) << log_.front();
  EXPECT_NE(GetWindowLongA(Control(), GWL_STYLE) & ES_READONLY, 0);
  EXPECT_STREQ(FormatOfSelection().szFaceName, "Courier New");
}

TEST_F(BnRichEditTest, DoubleClicksSelectWordsTripleClicksLinesAndDraggingMoreOfThem) {
  onDoubleClick_ = [this] {
    editor_.SetLocked(false);
    editor_.Focus();
  };
  // Wine 8's own double click would go wrong at the last word of such a line.
  const std::string head = std::string(200, 'w') + "\r\n\r\n";
  const std::string first = Letters() + Letters() + " = word";
  const std::string text = head + first + "\r\nEnd If\r\nSub Split(x)";
  const auto start = static_cast<int>(RichEditCharacters(head).size());
  const auto line = static_cast<int>(RichEditCharacters(first).size()) + 1;
  struct Case {
    int clicks, pressed, dragged;  // Places of characters behind `start`.
    std::string selected;
  };
  // A row's first click is elsewhere than the last one of the row before, of which it would be the next.
  const std::vector<Case> cases = {
      {2, line - 3, line - 3, "word"},
      {2, line + 5, line - 3, "word\r\nEnd If"},
      {2, line - 3, line + 5, "word\r\nEnd If"},
      {3, line + 1, line + 1, "End If\r\n"},
      {3, line + 9, line + 1, "End If\r\nSub Split(x)"},
      {3, line + 1, line - 3, first + "\r\nEnd If\r\n"},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.selected);
    editor_.SetLocked(true);
    editor_.SetText(text);
    const auto placeOf = [&](int character) {
      const POINT place = PlaceOf(start + character);
      return POINT{place.x + 2, place.y + 4};
    };
    ClickAt(Control(), placeOf(row.pressed), row.clicks - 1);
    PressMouse();
    if (row.dragged != row.pressed) PointAt(Control(), placeOf(row.dragged));
    ReleaseMouse();
    EXPECT_TRUE(WaitUntil([&] { return editor_.SelText() == row.selected; })) << editor_.SelText().value();
    EXPECT_TRUE(WaitUntil([&] { return !editor_.locked() && GetCapture() == nullptr; }));
  }
  TypeText("x");
  EXPECT_TRUE(WaitUntil([&] { return Text() == head + "xSub Split(x)"; })) << Text();
}

/// What long texts are made of: as many lines as wanted, each coloured alike.
std::string Lines(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "If a Then \"b\" 'c\r\n";
  return text;
}
constexpr const char* kLineHues = "kk f kkkk sss cc";
constexpr int kLineLength = 17;

TEST_F(BnRichEditTest, CodeIsColouredAtOnceWhereItIsSeenAndElsewhereByAndBy) {
  editor_.SetForeColor(RGB(10, 20, 30));
  editor_.SetFont({.Name = "Courier New", .Size = 9.75});
  editor_.SetLocked(false);
  for (const int lines : {3, 100, 500, 3}) {
    SCOPED_TRACE(lines);
    editor_.SetText(Lines(lines));
    EXPECT_EQ(WindowText(Control()), Lines(lines)) << "told at once, though not all is filled in";
    editor_.SetText(Lines(lines));
    SendMessageA(Control(), WM_CHAR, 'x', 0);
    EXPECT_EQ(Text(), "x" + Lines(lines));
    editor_.SetText(Lines(lines));
    EXPECT_TRUE(WaitUntil([&] { return LengthInControl() == lines * kLineLength; }));
    EXPECT_EQ(Hues(0, kLineLength - 1), kLineHues);
    const int last = (lines - 1) * kLineLength;
    EXPECT_TRUE(WaitUntil([&] { return Hues(last, last + kLineLength - 1) == kLineHues; }, 60000));
    editor_.SetSelection(last, 1);
    EXPECT_EQ(FormatOfSelection().yHeight, 195);
    editor_.SetSelection(0, 0);
    EXPECT_EQ(WindowText(Control()), Lines(lines));
    EXPECT_EQ(FirstLine(), 0);
    EXPECT_EQ(editor_.SelStart(), 0);
    EXPECT_EQ(SendMessageA(Control(), EM_CANUNDO, 0, 0), 0);
  }
}

TEST_F(BnRichEditTest, PartsAreMarkedAndScrolledToAsTheyAreFilledIn) {
  constexpr std::size_t line = kLineLength + 1;  // bytes
  editor_.SetText(Lines(500));
  editor_.Mark({.parts = {{line * 2, line * 2 + 2}, {line * 300, line * 300 + 2}}, .shown = 1, .ground = 99});
  EXPECT_LT(LengthInControl(), 200 * kLineLength);
  ASSERT_TRUE(WaitUntil([&] { return editor_.SelStart() == 300 * kLineLength; }));
  const LRESULT first = FirstLine();
  EXPECT_TRUE(first > 270 && first <= 300) << first;
  ASSERT_TRUE(WaitUntil([&] { return LengthInControl() == 500 * kLineLength; }));
  EXPECT_TRUE(FirstLine() == first && editor_.SelStart() == 300 * kLineLength && editor_.SelLength() == 2);
  for (const int marked : {2, 300}) {
    editor_.SetSelection(marked * kLineLength, 2);
    EXPECT_EQ(FormatOfSelection().crBackColor, 99U) << marked;
  }
}

TEST_F(BnRichEditTest, AfterAnEditTheColoursAreRightAndUndoTakesBackTheTextAlone) {
  // Each character of these is coloured, whatever the number of its bytes.
  const std::string z = Letters();
  const std::string text = "Dim x\r\ny = \"" + z + "\"";
  const std::string s(RichEditCharacters(z).size() + 2, 's');
  const std::string c(s.size(), 'c');
  const std::string hues = "kkk f f f " + s;
  PutOnClipboard({{CF_TEXT, "End\r\n'"}});
  struct Case {
    const char* name;
    int start, length;
    std::function<void()> act;
    std::string text, hues;
  };
  const std::vector<Case> cases = {
      {"a letter that ends a keyword", 3, 0, [] { TypeText("m"); }, "Dimm x\r\ny = \"" + z + "\"",
       "ffff f f f " + s},
      {"Delete over a line end", 5, 0, [] { PressKey(VK_DELETE); }, "Dim xy = \"" + z + "\"",
       "kkk ff f " + s},
      {"Shift+Enter", 1, 0, [] { PressKey(VK_RETURN, {VK_SHIFT}); }, "D\r\nim x\r\ny = \"" + z + "\"",
       "f ff f f f " + s},
      {"Tab", 0, 0, [] { PressKey(VK_TAB); }, "\tDim x\r\ny = \"" + z + "\"", " kkk f f f " + s},
      {"paste", 6, 4, [] { PressKey('V', {VK_CONTROL}); }, "Dim x\r\nEnd\r\n'\"" + z + "\"",
       "kkk f kkk c" + c},
      {"cut", 0, 4, [] { PressKey('X', {VK_CONTROL}); }, "x\r\ny = \"" + z + "\"", "f f f " + s},
      {"program", 4, 1, [this] { editor_.ReplaceSelection("' _"); }, "Dim ' _\r\ny = \"" + z + "\"",
       "kkk c c c c " + c},
  };
  editor_.Focus();
  for (const Case& edit : cases) {
    SCOPED_TRACE(edit.name);
    editor_.SetText(text);
    editor_.SetLocked(false);
    ASSERT_EQ(Hues(), hues);
    editor_.SetSelection(edit.start, edit.length);
    edit.act();
    ASSERT_TRUE(WaitUntil([&] { return Text() == edit.text; })) << Text();
    EXPECT_EQ(Hues(), edit.hues);
    EXPECT_EQ(editor_.SelLength(), 0);
    EXPECT_TRUE(editor_.CanUndo());
    editor_.Undo();
    EXPECT_EQ(Text(), text);
    EXPECT_EQ(Hues(), hues);
    EXPECT_FALSE(editor_.CanUndo());
  }
}

TEST_F(BnRichEditTest, WhatIsScrolledIntoViewIsColouredBeforeItIsSeenAndTypingMovesNothing) {
  editor_.SetText(Lines(1500));
  editor_.SetLocked(false);
  editor_.Focus();
  UpdateWindow(Control());
  SendMessageA(Control(), EM_LINESCROLL, 0, 1000);
  UpdateWindow(Control());
  EXPECT_GT(FirstLine(), 900);
  const int start = static_cast<int>(FirstLine() + 5) * kLineLength;
  EXPECT_EQ(Hues(start, start + 2 * kLineLength - 1), std::string(kLineHues) + ' ' + kLineHues);
  editor_.SetSelection(start + 3, 1);
  const LRESULT first = FirstLine();
  TypeText("Not");
  ASSERT_TRUE(WaitUntil([&] { return editor_.TextLength() == 1500 * kLineLength + 2; }));
  EXPECT_EQ(Hues(start, start + 18), "kk kkk kkkk sss cc");
  EXPECT_EQ(editor_.SelStart(), start + 6);
  EXPECT_EQ(FirstLine(), first);
}

TEST_F(BnRichEditTest, DraggingOutOfTheFieldScrolls) {
  editor_.SetText(Lines(100));
  ClickAt(Control(), {40, 20});
  PressMouse();
  const auto dragTo = [&](int y) {
    POINT screen{40, y};
    ClientToScreen(editor_.hWnd(), &screen);
    MovePointer(screen);
  };
  dragTo(210);
  EXPECT_TRUE(WaitUntil([&] { return FirstLine() > 5 && editor_.SelLength() > 15 * kLineLength; }));
  dragTo(-10);
  EXPECT_TRUE(WaitUntil([&] { return FirstLine() == 0 && editor_.SelStart() < kLineLength; }));
  ReleaseMouse();
  EXPECT_TRUE(WaitUntil([&] { return GetCapture() == nullptr; }));
}

TEST_F(BnRichEditTest, ColoursFollowTheirSwitchesAndTheSystem) {
  editor_.SetText("Dim a$ 'b");
  const std::string hues = "kkk ff cc";
  editor_.SetSyntaxColors(false);
  EXPECT_EQ(Hues(), "fff ff ff");
  editor_.SetForeColor(RGB(0, 0, 255));
  EXPECT_EQ(Hues(), "fff ff ff");
  editor_.SetSyntaxColors(true);
  EXPECT_EQ(Hues(), hues);
  int element = COLOR_WINDOW;
  const COLORREF before = GetSysColor(element);
  for (const COLORREF background : {RGB(0, 0, 0), before}) {
    SetSysColors(1, &element, &background);
    SendMessageA(editor_.hWnd(), WM_SYSCOLORCHANGE, 0, 0);
    EXPECT_EQ(Hues(), hues);
  }
  EXPECT_EQ(SendMessageA(Control(), EM_CANUNDO, 0, 0), 0);
  EXPECT_EQ(Text(), "Dim a$ 'b");
  std::string lines = "Dim a$ 'b";
  for (int line = 1; line < 300; ++line) lines += "\r\nDim a$ 'b";
  editor_.SetText(lines);
  for (const int place : {0, 2000}) {
    editor_.SetSelection(place, 0);
    for (const bool colours : {false, true}) {
      editor_.SetSyntaxColors(colours);
      EXPECT_EQ(editor_.SelStart(), place);
      EXPECT_TRUE(WaitUntil([&] { return Hues().ends_with(colours ? hues : "fff ff ff"); }));
      EXPECT_TRUE(Hues().starts_with(colours ? hues : "fff ff ff"));
    }
  }
}

TEST_F(BnRichEditTest, AnotherFontLeavesTextSelectionAndColours) {
  editor_.SetText("Dim a");
  editor_.SetLocked(false);
  editor_.ReplaceSelection("'");
  editor_.SetSelection(1, 2);
  editor_.SetFont({.Name = "Arial", .Size = 9.75, .Bold = true});
  const CHARFORMATA format = FormatOfSelection();
  EXPECT_STREQ(format.szFaceName, "Arial");
  EXPECT_EQ(format.yHeight, 195);
  EXPECT_NE(format.dwEffects & CFE_BOLD, 0U);
  EXPECT_EQ(editor_.SelStart(), 1);
  EXPECT_EQ(editor_.SelLength(), 2);
  EXPECT_EQ(Hues(), "cccc c");
  EXPECT_EQ(Text(), "'Dim a");
  editor_.Undo();
  EXPECT_EQ(Text(), "Dim a");
  EXPECT_EQ(Hues(), "kkk f");
  EXPECT_FALSE(editor_.CanUndo());
}

TEST_F(BnRichEditTest, TextIsShownAsItIsWhateverItLooksLike) {
  for (const std::string& text :
       std::vector<std::string>{"{\\rtf1 x}", "a\\b {c}\ttab " + Letters() + "\r\n\r\n", "\r\n", "bell\a"}) {
    SCOPED_TRACE(text);
    editor_.SetText(text);
    EXPECT_EQ(WindowText(Control()), text);
    editor_.SetText("\tx");
    const LONG behindTab = PlaceOf(1).x;
    editor_.SetText("1234x");
    EXPECT_NEAR(PlaceOf(4).x, behindTab, 1);
  }
}

TEST_F(BnRichEditTest, LockedTextCannotBeChangedByAnything) {
  editor_.SetText("abc");
  editor_.SetLocked(false);
  editor_.ReplaceSelection("x");
  editor_.SetLocked(true);
  editor_.Focus();
  editor_.SetSelection(0, 2);
  editor_.ReplaceSelection("y");
  editor_.Undo();
  for (const int message : {WM_CUT, WM_PASTE, WM_CLEAR, WM_UNDO, EM_REDO, WM_UNICHAR, WM_IME_CHAR}) {
    SendMessageA(Control(), static_cast<UINT>(message), 'u', 0);
  }
  PressKey('V', {VK_CONTROL});
  PressKey(VK_DELETE);
  TypeText("q");
  ASSERT_TRUE(WaitUntil([&] { return std::find(log_.begin(), log_.end(), "key q") != log_.end(); }));
  PressKey(VK_TAB);
  EXPECT_TRUE(WaitUntil([&] { return GetFocus() == other_; }));
  EXPECT_EQ(Text(), "xabc");
  EXPECT_FALSE(editor_.CanUndo());
}

TEST_F(BnRichEditTest, TheKeyboardAsksForAMenuAndTheRightButtonIsTold) {
  editor_.SetText("abc");
  editor_.Focus();
  log_.clear();
  PressKey(VK_F10, {VK_SHIFT});
  PressKey(VK_APPS);
  EXPECT_TRUE(WaitUntil([&] { return log_ == std::vector<std::string>{"menu", "menu"}; }));
  for (const int message : {WM_RBUTTONDOWN, WM_RBUTTONUP})
    SendMessageA(Control(), static_cast<UINT>(message), 0, MAKELPARAM(5, 5));
  SendMessageA(Control(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(Control()), MAKELPARAM(90, 90));
  EXPECT_EQ(log_, (std::vector<std::string>{"menu", "menu", "button 2"}));
}

TEST_F(BnRichEditTest, OnlyTextIsTakenFromADrag) {
  const ComPtr<PlainTextOnly> filter(new PlainTextOnly);
  const auto events = std::make_shared<const OleDragEvents>();
  const auto accepted = [&](const std::function<void(OleData&)>& fill) {
    const OleDragSource source(events);
    OleData data = source.Data();
    fill(data);
    CLIPFORMAT format = 0;
    return filter->QueryAcceptData(source.dataObject(), &format, RECO_DROP, TRUE, nullptr) == S_OK ? format
                                                                                                   : 0;
  };
  EXPECT_EQ(accepted([](OleData& data) { data.SetText("x"); }), CF_TEXT);
  EXPECT_EQ(accepted([](OleData& data) { data.SetText("x", CF_UNICODETEXT); }), CF_UNICODETEXT);
  EXPECT_EQ(accepted([](OleData& data) { data.SetFiles({"c:\\x.bmp"}); }), 0);
}

/// The control of a system without the other one.
class PlainFieldTest : public BnRichEditTest {
 protected:
  PlainFieldTest() : BnRichEditTest(BnRichEdit::Engine::PlainEdit) {}
};

TEST_F(PlainFieldTest, SelectionEditsAndUndo) {
  editor_.SetText("one\r\ntwo");
  editor_.SetLocked(false);
  editor_.Focus();
  editor_.SetSelection(0, editor_.TextLength());
  EXPECT_EQ(editor_.SelText(), "one\r\ntwo");
  editor_.SetSelection(1, 1);
  EXPECT_EQ(editor_.SelText(), "n");
  EXPECT_FALSE(editor_.CanUndo());
  editor_.ReplaceSelection("x\r\ny");
  EXPECT_EQ(Text(), "ox\r\nye\r\ntwo");
  EXPECT_TRUE(editor_.CanUndo());
  editor_.Undo();
  EXPECT_EQ(Text(), "one\r\ntwo");
  editor_.SetFont({.Name = "Arial", .Size = 12});
  editor_.SetSyntaxColors(false);
  editor_.SetForeColor(RGB(1, 2, 3));
  EXPECT_EQ(editor_.SelStart() + editor_.SelLength(), 2);
  editor_.SetLocked(true);
  editor_.ReplaceSelection("z");
  EXPECT_EQ(Text(), "one\r\ntwo");
  editor_.SetText("");
  EXPECT_EQ(editor_.TextLength(), 0);
}

}  // namespace
}  // namespace snip::test
