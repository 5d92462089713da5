#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "library/BnsFormat.h"
#include "platform/Win32Text.h"
#include "tests/app/Program.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {
namespace {

class LibraryFileTest : public testing::Test {
 protected:
  void Open() {
    program_.MarkAsRunBefore();
    program_.Start();
    window_ = program_.MainWindow();
    ASSERT_NE(window_, nullptr);
    ASSERT_TRUE(WaitUntil([&] { return IsForeground(window_); }));
    ASSERT_TRUE(WaitUntil([&] { return SendMessageA(List(), LB_GETCURSEL, 0, 0) == 0; }));
  }
  void Close() {
    PostMessageA(window_, WM_CLOSE, 0, 0);
    ASSERT_TRUE(program_.WaitForEnd());
    ASSERT_EQ(program_.ExitCode(), 0U);
  }

  HWND List() const { return FindControl(window_, frmAddIn::kListId); }
  HWND Description() const { return FindControl(window_, frmAddIn::kDescriptionId); }
  HWND Code() const { return GetDlgItem(FindControl(window_, frmAddIn::kCodeId), BnRichEdit::kControlId); }

  Program program_;
  HWND window_ = nullptr;
};

TEST_F(LibraryFileTest, AnEditSurvivesSaveAndRestartAsTheFormatPredicts) {
  program_.folder().Write("My Lib.bns", NewLibraryBns());
  Open();
  ClickCentre(Code(), 2);
  ASSERT_TRUE(WaitUntil([&] { return (GetWindowLongA(Code(), GWL_STYLE) & ES_READONLY) == 0; }));
  PressKey('A', {VK_CONTROL});
  TypeText("Beep");
  PressKey(VK_RETURN);
  TypeText("  Stop");
  ASSERT_TRUE(WaitUntil([&] { return WindowText(Code()) == "Beep\r\n  Stop"; })) << WindowText(Code());
  ClickCentre(Description());
  PressKey('A', {VK_CONTROL});
  PressKey(VK_END, {VK_CONTROL});
  TypeText("!");
  ASSERT_TRUE(WaitUntil([&] { return WindowText(Description()) == "<description goes here>!"; }))
      << WindowText(Description());
  PressKey('S', {VK_CONTROL});
  const std::string expected =
      "BNS2.0\r\nNew Snippet\r\n\r\n<description goes here>!\r\n(,)\r\nBeep\r\n  Stop\r\n...\r\n";
  EXPECT_TRUE(WaitUntil([&] { return program_.folder().Read("My Lib.bns") == expected; }))
      << program_.folder().Read("My Lib.bns");
  Close();

  Open();
  EXPECT_EQ(WindowText(Code()), "Beep\r\n  Stop");
  EXPECT_EQ(WindowText(Description()), "<description goes here>!");
  Close();
  EXPECT_EQ(program_.folder().Read("My Lib.bns"), expected);
}

TEST_F(LibraryFileTest, ClosingWithUnsavedChangesAsksInTheProgramsOwnBox) {
  program_.folder().Write("My Lib.bns", NewLibraryBns());
  Open();
  ClickCentre(Description());
  PressKey(VK_HOME, {VK_CONTROL});
  TypeText("A");
  ASSERT_TRUE(WaitUntil([&] { return WindowText(Description()) == "A<description goes here>"; }));
  PostMessageA(window_, WM_CLOSE, 0, 0);
  HWND box = nullptr;
  ASSERT_TRUE(WaitUntil([&] {
    box = GetLastActivePopup(window_);
    return box != window_ && IsWindowVisible(box) != 0;
  }));
  EXPECT_EQ(WindowText(GetDlgItem(box, 100)), "Save changes to 'My Lib'?");
  PostMessageA(GetDlgItem(box, IDYES), BM_CLICK, 0, 0);
  ASSERT_TRUE(program_.WaitForEnd());
  EXPECT_NE(program_.folder().Read("My Lib.bns").find("A<description"), std::string::npos);
}

TEST_F(LibraryFileTest, TheStarterLibrariesOpenAndSaveUnchanged) {
  namespace fs = std::filesystem;
  int libraries = 0;
  for (const auto& entry : fs::directory_iterator(SNIPSTORE_STARTER_LIBRARIES)) {
    if (entry.path().extension() != ".bns") continue;
    const std::string name = entry.path().filename().string();
    SCOPED_TRACE(name);
    ++libraries;
    fs::copy_file(entry.path(), program_.folder().File(name));
    const std::string before = program_.folder().Read(name);
    Open();
    DeleteFileA(program_.folder().File(name).c_str());
    PressKey('S', {VK_CONTROL});
    EXPECT_TRUE(WaitUntil([&] { return program_.folder().Read(name) == before; }));
    Close();
    fs::remove(program_.folder().File(name));
  }
  EXPECT_GE(libraries, 4);
}

}  // namespace
}  // namespace snip::test
