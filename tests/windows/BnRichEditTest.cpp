#include "ui/editor/BnRichEdit.h"

#include <gtest/gtest.h>
#include <richedit.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "tests/windows/TestDesktop.h"

namespace snip::test {
namespace {

const FontProperty kFont{.Name = "Courier New", .Size = 10};

class BnRichEditTest : public testing::Test {
 protected:
  void SetUp() override {
    frame_ = CreateWindowExA(0, "STATIC", "editor", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 500, 300,
                             nullptr, nullptr, nullptr, nullptr);
    other_ = CreateWindowExA(0, "EDIT", "", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0, 100, 20, frame_,
                             nullptr, nullptr, nullptr);
    ASSERT_TRUE(editor_.CreateIn(frame_, 5, kFont));
    MoveWindow(editor_.hWnd(), 0, 20, 480, 200, TRUE);
    ASSERT_TRUE(WaitUntil([&] { return GetActiveWindow() == frame_; }));
  }
  void TearDown() override {
    editor_.Destroy();
    DestroyWindow(frame_);
  }

  HWND Control() const { return GetWindow(editor_.hWnd(), GW_CHILD); }

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
                      .mouseDown = [](int, POINT) {},
                      .contextMenu = [](POINT) {}}};
  HWND frame_ = nullptr;
  HWND other_ = nullptr;
};

TEST_F(BnRichEditTest, UntouchedTextComesBackByteForByte) {
  std::string allBytes;
  for (int i = 0; i < 256; ++i) allBytes += static_cast<char>(i);
  for (const std::string& text :
       {std::string(), std::string("Dim a$\r\n\r\nEnd\r\n"), std::string("lone\rCR and\nLF"),
        std::string("a\0b\0", 4), std::string("\x80\x9F\xA0\xFF"), allBytes,
        std::string("{\\rtf1 not rich text}"), std::string(1000000, 'x')}) {
    SCOPED_TRACE(text.substr(0, 30));
    editor_.SetText(text);
    EXPECT_EQ(editor_.text(), text);
  }
}

TEST_F(BnRichEditTest, EditedTextKeepsZeroBytesAndLines) {
  editor_.SetText(std::string("one\r\ntwo\0end\r\n", 14));
  editor_.SetLocked(false);
  editor_.Focus();
  TypeText("x");
  ASSERT_TRUE(WaitUntil([&] { return editor_.text() != std::string("one\r\ntwo\0end\r\n", 14); }));
  EXPECT_EQ(editor_.text(), std::string("xone\r\ntwo\0end\r\n", 15));
}

TEST_F(BnRichEditTest, EditingKeepsTheLinesThatOddLineEndsMake) {
  editor_.SetText("a\r\r\nb\rc\nd");
  editor_.SetLocked(false);
  editor_.Focus();
  TypeText("x");
  EXPECT_TRUE(WaitUntil([&] { return editor_.text() == "xa\r\n\r\nb\r\nc\r\nd"; })) << editor_.text();
}

TEST_F(BnRichEditTest, PastingTakesTextAlone) {
  ASSERT_NE(OpenClipboard(frame_), 0);
  EmptyClipboard();
  const auto put = [](UINT format, const std::string& data) {
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, data.size() + 1);
    std::memcpy(GlobalLock(block), data.c_str(), data.size() + 1);
    GlobalUnlock(block);
    SetClipboardData(format, block);
  };
  put(RegisterClipboardFormatA("Rich Text Format"), "{\\rtf1\\ansi rich}");
  put(CF_TEXT, "plain");
  CloseClipboard();
  editor_.SetText("");
  editor_.SetLocked(false);
  editor_.Focus();
  PressKey('V', {VK_CONTROL});
  EXPECT_TRUE(WaitUntil([&] { return editor_.text() == "plain"; })) << editor_.text();
  editor_.SetLocked(true);
  PressKey('V', {VK_CONTROL});
  PressKey(VK_TAB);
  EXPECT_TRUE(WaitUntil([&] { return GetFocus() == other_; }));
  EXPECT_EQ(editor_.text(), "plain");
}

TEST_F(BnRichEditTest, LockedTextCannotBeTypedIn) {
  editor_.SetText("abc");
  editor_.SetLocked(true);
  editor_.Focus();
  TypeText("x");
  PressKey(VK_DELETE);
  ASSERT_TRUE(WaitUntil([&] { return std::find(log_.begin(), log_.end(), "key x") != log_.end(); }));
  EXPECT_EQ(editor_.text(), "abc");
}

TEST_F(BnRichEditTest, TabMovesOnWhileLockedAndIsTypedWhileNot) {
  editor_.SetText("abc");
  editor_.Focus();
  PressKey(VK_TAB);
  EXPECT_TRUE(WaitUntil([&] { return GetFocus() == other_; }));
  editor_.SetLocked(false);
  editor_.Focus();
  PressKey(VK_TAB);
  EXPECT_TRUE(WaitUntil([&] { return editor_.text() == "\tabc"; })) << editor_.text();
}

TEST_F(BnRichEditTest, ShowingLongTextsOneAfterAnotherLosesNeitherFocusNorLock) {
  const std::string longText(20000, 'a');
  editor_.SetText(longText);
  editor_.Focus();
  log_.clear();
  editor_.SetText("short");
  EXPECT_EQ(editor_.text(), "short");
  EXPECT_TRUE(editor_.HasFocus());
  EXPECT_TRUE(log_.empty()) << log_.front();
  EXPECT_NE(GetWindowLongA(Control(), GWL_STYLE) & ES_READONLY, 0);
  CHARFORMATA format{};
  format.cbSize = sizeof format;
  SendMessageA(Control(), EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
  EXPECT_STREQ(format.szFaceName, "Courier New");
}

TEST_F(BnRichEditTest, TypingOverADoubleClickedWordReplacesThatWord) {
  onDoubleClick_ = [this] {
    editor_.SetLocked(false);
    editor_.Focus();
  };
  const std::string before = std::string(200, 'w') + "\r\n\r\n    alpha = ";
  const std::string after = "\r\nEnd If\r\nEnd Function\r\n\r\nPublic Sub Split(ByVal x)\r\nEnd Sub\r\n";
  for (const char* rest : {"", " + 1", "(1)"}) {
    SCOPED_TRACE(rest);
    editor_.SetLocked(true);
    editor_.SetText(before + "word" + rest + after);
    POINTL place{};
    const std::size_t character = before.size() - 2 + 1;  // a line end counts one there; into the word
    SendMessageA(Control(), EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&place), static_cast<LPARAM>(character));
    ClickAt(Control(), {place.x, place.y + 4}, 2);
    ASSERT_TRUE(WaitUntil([&] { return !editor_.locked(); }));
    TypeText("x");
    EXPECT_TRUE(WaitUntil([&] { return editor_.text() == before + "x" + rest + after; })) << editor_.text();
  }
}

TEST_F(BnRichEditTest, ADoubleClickIsTold) {
  editor_.SetText("word");
  ClickCentre(editor_.hWnd(), 2);
  EXPECT_TRUE(WaitUntil([&] { return std::find(log_.begin(), log_.end(), "double click") != log_.end(); }));
}

}  // namespace
}  // namespace snip::test
