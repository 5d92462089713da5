#include "tests/windows/BnRichEditTest.h"

#include <algorithm>
#include <memory>
#include <tuple>

#include "platform/Clipboard.h"
#include "platform/ExactTextField.h"
#include "platform/OleDragSource.h"
#include "ui/editor/PlainTextOnly.h"
#include "ui/editor/RichEditText.h"

namespace snip::test {
namespace {

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
       {std::string(), std::string("Dim a$\r\n\r\nEnd\r\n"), allBytes, std::string(1000000, 'x')}) {
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
      {3, line + 1, line + 1, "End If\r\n"},
      {3, line + 9, line + 1, "End If\r\nSub Split(x)"},
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
  EXPECT_TRUE(WaitUntil([&] { return Text() == head + first + "\r\nx"; })) << Text();
}

TEST_F(BnRichEditTest, DraggingOutOfTheFieldScrolls) {
  editor_.SetText(std::string(100, '\n'));
  ClickAt(Control(), {40, 20});
  PressMouse();
  const auto dragTo = [&](int y) {
    POINT screen{40, y};
    ClientToScreen(editor_.hWnd(), &screen);
    MovePointer(screen);
  };
  dragTo(210);
  EXPECT_TRUE(WaitUntil([&] { return FirstLine() > 5 && editor_.SelLength() > 15; }));
  dragTo(-10);
  EXPECT_TRUE(WaitUntil([&] { return FirstLine() == 0 && editor_.SelStart() == 0; }));
  ReleaseMouse();
  EXPECT_TRUE(WaitUntil([&] { return GetCapture() == nullptr; }));
}

TEST_F(BnRichEditTest, TextIsShownAsItIsWhateverItLooksLike) {
  for (const std::string& text :
       std::vector<std::string>{"{\\rtf1 x}", "a\\b {c}\ttab " + Letters() + "\r\n\r\n", "\r\n", "bell\a"}) {
    SCOPED_TRACE(text);
    editor_.SetText(text);
    EXPECT_EQ(WindowText(Control()), text);
  }
  editor_.SetText("\tx");
  const LONG behindTab = PlaceOf(1).x;
  editor_.SetText("1234x");
  EXPECT_NEAR(PlaceOf(4).x, behindTab, 1);
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
