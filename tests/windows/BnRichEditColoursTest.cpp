#include <algorithm>
#include <array>

#include "platform/OleColor.h"
#include "tests/windows/BnRichEditTest.h"
#include "ui/editor/CodeColours.h"
#include "ui/editor/RichEditText.h"

namespace snip::test {
namespace {

class BnRichEditColoursTest : public BnRichEditTest {
 protected:
  /// What is filled in by now: asked past the field, which would fill in the rest first.
  LRESULT LengthInControl() const {
    WNDCLASSA description{};
    GetClassInfoA(nullptr, RICHEDIT_CLASSA, &description);
    GETTEXTLENGTHEX asked{GTL_NUMCHARS, CP_ACP};
    return CallWindowProcA(description.lpfnWndProc, Control(), EM_GETTEXTLENGTHEX,
                           reinterpret_cast<WPARAM>(&asked), 0);
  }
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
};

/// What long texts are made of: as many lines as wanted, each coloured alike.
std::string Lines(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "If a Then \"b\" 'c\r\n";
  return text;
}
constexpr const char* kLineHues = "kk f kkkk sss cc";
constexpr int kLineLength = 17;

TEST_F(BnRichEditColoursTest, CodeIsColouredAtOnceWhereItIsSeenAndElsewhereByAndBy) {
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
    EXPECT_TRUE(WaitUntil([&] { return LengthInControl() == LRESULT{lines} * kLineLength; }));
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

TEST_F(BnRichEditColoursTest, PartsAreMarkedAndScrolledToAsTheyAreFilledIn) {
  constexpr std::size_t line = kLineLength + 1;  // bytes
  editor_.SetText(Lines(500));
  editor_.Mark({.parts = {{line * 2, line * 2 + 2}, {line * 300, line * 300 + 2}}, .shown = 1, .ground = 99});
  EXPECT_LT(LengthInControl(), 200 * kLineLength);
  ASSERT_TRUE(WaitUntil([&] { return editor_.SelStart() == 300 * kLineLength; }));
  const LRESULT first = FirstLine();
  EXPECT_TRUE(first > 270 && first <= 300) << first;
  ASSERT_TRUE(WaitUntil([&] { return LengthInControl() == LRESULT{500} * kLineLength; }));
  EXPECT_TRUE(FirstLine() == first && editor_.SelStart() == 300 * kLineLength && editor_.SelLength() == 2);
  for (const int marked : {2, 300}) {
    editor_.SetSelection(marked * kLineLength, 2);
    EXPECT_EQ(FormatOfSelection().crBackColor, 99U) << marked;
  }
}

TEST_F(BnRichEditColoursTest, AfterAnEditTheColoursAreRightAndUndoTakesBackTheTextAlone) {
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

TEST_F(BnRichEditColoursTest, WhatIsScrolledIntoViewIsColouredBeforeItIsSeenAndTypingMovesNothing) {
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

TEST_F(BnRichEditColoursTest, ColoursFollowTheirSwitchesAndTheSystem) {
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

TEST_F(BnRichEditColoursTest, AnotherFontLeavesTextSelectionAndColours) {
  editor_.SetText("Dim a");
  editor_.SetLocked(false);
  editor_.ReplaceSelection("'");
  editor_.SetSelection(1, 2);
  editor_.SetFont({.Name = "Arial", .Size = 9.75, .Bold = true});
  const CHARFORMAT2A format = FormatOfSelection();
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

}  // namespace
}  // namespace snip::test
