#include <gtest/gtest.h>

#include <windows.h>
#include <tlhelp32.h>

#include <cstdlib>
#include <string>

#include "library/BnsFormat.h"
#include "platform/Win32Text.h"
#include "tests/app/Program.h"
#include "tests/host/HostProcess.h"
#include "tests/host/HostTypeLibrary.h"
#include "ui/dialogs/frmMsg.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {
namespace {

constexpr const char* kEntry = "[Brennic Snipstore 2.0]";
constexpr const char* kTitle = "Brennic Snipstore 2.x";

/// How many processes of the program there are.
int Servers() {
  const UniqueFile processes(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32 entry{};
  entry.dwSize = sizeof entry;
  int count = 0;
  for (BOOL more = Process32First(processes.get(), &entry); more != FALSE;
       more = Process32Next(processes.get(), &entry)) {
    if (lstrcmpiA(entry.szExeFile, "BnSnipstore2.exe") == 0) ++count;
  }
  return count;
}

/// The program registered as a server in a folder with a blank in its path, with one library.
class AddInTest : public testing::Test {
 protected:
  AddInTest() {
    program_.folder().Write("My Great Lib.bns",
                            "BNS2.0\r\nFirst\r\n\r\nd1\r\n(,)\r\nSub A()\r\n  Beep\r\nEnd Sub\r\n(.)\r\n"
                            "Second\r\n\r\nd2\r\n(,)\r\nDim x\r\n...\r\n");
    program_.Start("/RegServer");
    EXPECT_TRUE(program_.WaitForEnd());
    EXPECT_EQ(program_.ExitCode(), 0U);
  }
  ~AddInTest() override {
    EXPECT_TRUE(WaitUntil([] { return Servers() == 0; })) << "a process stays behind";
    UnregisterHostTypeLibrary();
  }

  std::string LibraryPath() const { return program_.folder().File("host.tlb"); }

  /// Connects and chooses the entry.
  HWND OpenWindow(HostProcess& host) {
    EXPECT_EQ(host.Ask("connect 0"), "0");
    EXPECT_EQ(host.Ask("click 0"), "");
    return program_.MainWindow();
  }
  static void Disconnect(HostProcess& host) {
    EXPECT_EQ(host.Ask("disconnect 1"), "0");
    EXPECT_EQ(host.Ask("references"), "0") << "of the environment's objects";
    host.Ask("release");
  }
  static void Paste(HWND window) { PostMessageA(window, WM_COMMAND, 108, 0); }
  static void PasteAll(HWND window) { PostMessageA(window, WM_COMMAND, 109, 0); }

  /// Reads the message that the window shows, and closes it.
  static std::string CloseMessage(HWND window) {
    HWND box = nullptr;
    WaitUntil([&] {
      box = GetLastActivePopup(window);
      return box != window && IsWindowVisible(box) != 0;
    });
    if (box == window) return "(no message)";
    const std::string text = WindowText(GetDlgItem(box, frmMsg::kLabelId));
    PostMessageA(GetDlgItem(box, IDOK), BM_CLICK, 0, 0);
    EXPECT_TRUE(WaitUntil([&] { return IsWindow(box) == 0; }));
    return text;
  }

  Program program_;
};

TEST_F(AddInTest, LoadingAddsOneEntryAndUnloadingRemovesIt) {
  HostProcess host(LibraryPath());
  host.Ask("entry Brennic Snipstore 2.0");
  host.Ask("entry Other");
  host.Ask("entry Brennic Snipstore 2.0");
  EXPECT_EQ(host.Ask("connect 1"), "0");
  EXPECT_EQ(host.Ask("entries"), std::string("[Other]") + kEntry);
  EXPECT_EQ(FindVisibleWindow(kTitle), nullptr);
  EXPECT_EQ(Servers(), 1);
  Disconnect(host);
  EXPECT_EQ(host.Ask("entries"), "[Other]");
}

}  // namespace
}  // namespace snip::test
