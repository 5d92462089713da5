#pragma once

#include <gtest/gtest.h>

#include <windows.h>
#include <tlhelp32.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/AddInIdentity.h"
#include "platform/Com.h"
#include "platform/Win32Text.h"
#include "tests/app/Program.h"
#include "tests/host/HostProcess.h"
#include "tests/host/HostTypeLibrary.h"
#include "ui/dialogs/frmMsg.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {

inline constexpr const char* kEntry = "[Brennic Snipstore 2.0]";
inline constexpr const char* kTitle = "Brennic Snipstore 2.x";
inline constexpr const char* kFormWithA = "module Form1 1 a";
inline constexpr const char* kPasted = "Sub A()|  Beep|End Sub|a|";  ///< The first snippet in that module.
inline constexpr const char* kQuestion = "Save changes to 'My Great Lib'?";

/// The processes of the program.
inline std::vector<DWORD> ServerIds() {
  const UniqueFile processes(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32 entry{};
  entry.dwSize = sizeof entry;
  std::vector<DWORD> ids;
  for (BOOL more = Process32First(processes.get(), &entry); more != FALSE;
       more = Process32Next(processes.get(), &entry)) {
    if (lstrcmpiA(entry.szExeFile, "BnSnipstore2.exe") == 0) ids.push_back(entry.th32ProcessID);
  }
  return ids;
}
inline std::size_t Servers() {
  return ServerIds().size();
}

/// The program registered as a server in a folder with a blank in its path, with one library, and an
/// environment, which holds no reference any more when a test is over.
class AddInTest : public testing::Test {
 protected:
  explicit AddInTest(const char* environment = "") : host(environment) {
    program_.folder().Write("My Great Lib.bns",
                            "BNS2.0\r\nFirst\r\n\r\nd1\r\n(,)\r\nSub A()\r\n  Beep\r\nEnd Sub\r\n(.)\r\n"
                            "Second\r\n\r\nd2\r\n(,)\r\nDim x\r\n...\r\n");
    const std::string library = kVbaLibraries[sizeof(void*) == 8 ? 1 : 0].file;
    CopyFileA((ProgramDirectory() + "\\..\\" + library).c_str(), program_.folder().File(library).c_str(),
              TRUE);
    RunSilently("/RegServer");
  }
  ~AddInTest() override {
    EXPECT_TRUE(WaitUntil([] { return Servers() == 0U; })) << "a process stays behind";
    UnregisterHostTypeLibrary();
  }
  void TearDown() override {
    if (host.Running()) Disconnect(host);
  }

  void RunSilently(const std::string& argument) {
    program_.Start(argument + " -Silent");
    EXPECT_TRUE(program_.WaitForEnd());
    EXPECT_EQ(program_.ExitCode(), 0U);
  }
  /// Commands, each with its answer.
  static void Expect(HostProcess& at, std::initializer_list<std::pair<const char*, std::string>> answers) {
    for (const auto& [command, answer] : answers) EXPECT_EQ(at.Ask(command), answer) << command;
  }
  static void ExpectSoon(HostProcess& at, const std::string& command, const std::string& answer) {
    EXPECT_TRUE(WaitUntil([&] { return at.Ask(command) == answer; })) << command << ": " << at.Ask(command);
  }
  /// Connects and chooses the entry, after another command.
  HWND OpenWindow(HostProcess& at, const std::string& first = "") const {
    if (!first.empty()) at.Ask(first);
    Expect(at, {{"connect 0", "0"}, {"click", ""}});
    const HWND window = program_.MainWindow();
    SendMessageA(window, WM_NULL, 0, 0);  // answered when all of the showing is done
    return window;
  }
  static void Disconnect(HostProcess& at) {
    Expect(at, {{"disconnect 1", "0"}});
    ExpectSoon(at, "references", "0");
    Expect(at, {{"release", ""}});
  }
  static bool Connected() {
    return FindWindowExA(HWND_MESSAGE, nullptr, "SnipstoreConnection", nullptr) != nullptr;
  }

  /// The program's visible windows other than the main window.
  static std::vector<HWND> WindowsOver(HWND window) {
    std::vector<HWND> windows;
    EnumThreadWindows(GetWindowThreadProcessId(window, nullptr), &AddIfVisible,
                      reinterpret_cast<LPARAM>(&windows));
    std::erase(windows, window);
    return windows;
  }
  static BOOL CALLBACK AddIfVisible(HWND window, LPARAM windows) {
    if (IsWindowVisible(window) != 0) reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
    return TRUE;
  }
  static void Choose(HWND window, int command) {
    PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
  }
  static void Describe(HWND window) {
    SendMessageA(FindControl(window, frmAddIn::kDescriptionId), EM_REPLACESEL, FALSE,
                 reinterpret_cast<LPARAM>("changed "));
  }
  bool Saved(const std::string& text) const {
    return program_.folder().Read("My Great Lib.bns").find(text) != std::string::npos;
  }
  /// Pastes the first snippet into Form1, which makes it `text`.
  static void PasteInto(HostProcess& at, HWND window, const std::string& text = kPasted) {
    Choose(window, Command::kPasteCode);
    ExpectSoon(at, "text Form1", text);
    EXPECT_EQ(at.Ask("front"), "no") << "the environment comes to the front";
  }
  /// Reads the message that the window shows, and closes it by a button.
  static std::string CloseMessage(HWND window, int button = IDOK) {
    HWND box = nullptr;
    WaitUntil([&] {
      box = IsWindowVisible(window) != 0 ? GetLastActivePopup(window) : FindVisibleWindow(kTitle);
      return box != nullptr && box != window && IsWindowVisible(box) != 0;
    });
    if (box == nullptr || box == window) return "(no message)";
    std::string text = WindowText(GetDlgItem(box, frmMsg::kLabelId));
    PostMessageA(GetDlgItem(box, button), BM_CLICK, 0, 0);
    EXPECT_TRUE(WaitUntil([&] { return IsWindow(box) == 0; }));
    return text;
  }

  const ComApartment apartment_;
  Program program_;
  HostProcess host;
};

/// What all environments have: VBA's, too, which loads a part of the add-in into its process.
class AnyHostTest : public AddInTest, public testing::WithParamInterface<const char*> {
 protected:
  AnyHostTest() : AddInTest(GetParam()) {}
  static bool IsVba() { return std::string_view(GetParam()) == "vba"; }
};

}  // namespace snip::test
