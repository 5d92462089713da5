#include <gtest/gtest.h>
#include <shlwapi.h>

#include <string>

#include "library/BnsFormat.h"
#include "platform/Win32Text.h"
#include "tests/app/Program.h"
#include "ui/dialogs/frmMsg.h"

namespace snip::test {
namespace {

constexpr const char* kNoticeTitle = "Brennic Snipstore 2.0";

BOOL CALLBACK LookForRichEdit(HWND child, LPARAM found) {
  char name[20]{};
  GetClassNameA(child, name, sizeof name);
  *reinterpret_cast<bool*>(found) |= std::string(name) == "RichEdit20A";
  return TRUE;
}

TEST(FirstStart, RegistersSaysSoAndOpensNoWindow) {
  Program program;
  program.Start();
  const HWND notice = WaitForWindow(kNoticeTitle);
  ASSERT_NE(notice, nullptr);
  EXPECT_EQ(
      WindowText(GetDlgItem(notice, frmMsg::kLabelId)),
      "Brennic Snipstore 2.0 was added to VB's list of add-ins. Run the executable again to start Snipstore "
      "outside the VB IDE.");
  EXPECT_EQ(Program::AddInEntry(), "0");
  EXPECT_EQ(Program::ServerCommand(), "\"" + program.folder().File("BnSnipstore2.exe") + "\"");
  EXPECT_EQ(Program::Marker(), "") << "not before the notice has been read";
  ASSERT_TRUE(WaitUntil([&] { return IsForeground(notice); }));
  PressKey(VK_RETURN);
  ASSERT_TRUE(program.WaitForEnd());
  EXPECT_EQ(program.ExitCode(), 0U);
  EXPECT_EQ(Program::Marker(), "Yes");
  EXPECT_EQ(FindVisibleWindow("Brennic Snipstore 2.x"), nullptr);
}

TEST(FirstStart, TheSecondStartOpensTheWindowAndWritesNothing) {
  Program program;
  program.folder().Write("Lib.bns", NewLibraryBns());
  program.MarkAsRunBefore("No");
  // What lies beside a download is not taken for a library of the system.
  for (const char* name : {"riched20.dll", "oleacc.dll", "winmm.dll", "uxtheme.dll", "dwmapi.dll"}) {
    program.folder().Write(name, "no library");
  }
  program.Start();
  const HWND window = program.MainWindow();
  ASSERT_NE(window, nullptr);
  bool hasRichEdit = false;
  EnumChildWindows(window, &LookForRichEdit, reinterpret_cast<LPARAM>(&hasRichEdit));
  EXPECT_TRUE(hasRichEdit);
  PostMessageA(window, WM_CLOSE, 0, 0);
  ASSERT_TRUE(program.WaitForEnd());
  EXPECT_EQ(program.ExitCode(), 0U);
  EXPECT_EQ(Program::AddInEntry(), "");
  EXPECT_EQ(Program::ServerCommand(), "");
  EXPECT_EQ(Program::Marker(), "No");
  EXPECT_EQ(program.folder().Read("Lib.bns"), NewLibraryBns());
}

TEST(FirstStart, ALaterStartEntersWhatAnotherFolderOrAnEarlierVersionLeftOut) {
  const char* const vb6 = R"(Software\Microsoft\Visual Basic\6.0\Addins\BnSnipstore2.Connect)";
  const char* const vba = R"(Software\Microsoft\VBA\VBE\6.0\Addins64\BnSnipstoreVba64.Connect)";
  Program program;
  program.MarkAsRunBefore();
  program.Start("/regserver /silent");
  ASSERT_TRUE(program.WaitForEnd());
  const std::string command = Program::ServerCommand();
  program.folder().Write("Lib.bns", NewLibraryBns());
  program.folder().Write("BnSnipstoreVba64.dll", "as unpacked over a version that had none");
  for (const bool first : {true, false}) {
    if (!first) Program::SetServerCommand("Z:\\old.exe");
    SHDeleteKeyA(HKEY_CURRENT_USER, vb6);
    SHDeleteKeyA(HKEY_CURRENT_USER, vba);
    program.Start();
    const HWND window = program.MainWindow();
    ASSERT_NE(window, nullptr) << "no second notice";
    EXPECT_EQ(Program::ServerCommand(), command);
    for (const char* key : {vb6, vba})
      EXPECT_EQ(Program::ListEntry(key), first ? "Brennic Snipstore 2.0 0" : "")
          << "what its user has removed stays so";
    PostMessageA(window, WM_CLOSE, 0, 0);
    ASSERT_TRUE(program.WaitForEnd());
  }
}

TEST(FirstStart, RegisteringSaysWhatFailedUnlessItShallBeSilent) {
  Program program;
  char windows[MAX_PATH]{};
  GetWindowsDirectoryA(windows, sizeof windows);
  const std::string list = std::string(windows) + "\\vbaddin.ini";
  DeleteFileA(list.c_str());
  ASSERT_NE(CreateDirectoryA(list.c_str(), nullptr), 0) << "where the list cannot be written";
  for (const bool silent : {true, false}) {
    program.Start(silent ? "/regserver /silent" : "/regserver");
    if (!silent) {
      const HWND message = WaitForWindow(kNoticeTitle);
      ASSERT_NE(message, nullptr);
      EXPECT_NE(WindowText(GetDlgItem(message, frmMsg::kLabelId)).find("vbaddin.ini"), std::string::npos);
      PostMessageA(message, WM_CLOSE, 0, 0);
    }
    EXPECT_TRUE(program.WaitForEnd());
    EXPECT_EQ(program.ExitCode(), 1U);
  }
  RemoveDirectoryA(list.c_str());
}

TEST(FirstStart, AComponentNeitherReadsNorChangesTheMarker) {
  for (const std::string marker : {"", "Yes"}) {
    for (const char* argument : {"-Embedding", "/embedding"}) {
      SCOPED_TRACE(marker + argument);
      Program program;
      if (!marker.empty()) program.MarkAsRunBefore(marker);
      program.Start(argument);
      // It waits for its client, which tests of the add-in are; here none comes.
      ASSERT_TRUE(program.WaitUntilIdle());
      EXPECT_EQ(Program::HasRegistryKey(), !marker.empty());
      EXPECT_EQ(Program::Marker(), marker);
      EXPECT_EQ(Program::AddInEntry(), "");
      EXPECT_EQ(FindVisibleWindow("Brennic Snipstore 2.x"), nullptr);
      program.Quit();
      EXPECT_TRUE(program.WaitForEnd());
      EXPECT_EQ(program.ExitCode(), 0U);
    }
  }
}

}  // namespace
}  // namespace snip::test
