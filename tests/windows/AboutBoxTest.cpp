#include <gtest/gtest.h>

#include "platform/Registry32.h"
#include "platform/Win32Text.h"
#include "tests/support/ModalWindow.h"
#include "tests/support/TestRegistry.h"
#include "ui/dialogs/SystemInformation.h"
#include "ui/dialogs/frmAbout.h"
#include "version.h"

namespace snip::test {
namespace {

constexpr const char* kTitle = "About Brennic Snipstore";
constexpr const char* kPathKey = "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO";
constexpr const char* kFolderKey = "SOFTWARE\\Microsoft\\Shared Tools Location";

class AboutBoxTest : public testing::Test {
 protected:
  const TestRegistry machine_{HKEY_LOCAL_MACHINE};
  const Registry32 registry_{[](const std::string&, int, const std::string&) { return MessageResult::Ok; }};
  std::vector<std::string> messages_;
  const ShowMessageFunction showMessage_ = [this](const std::string& prompt, int style,
                                                  const std::string& title) {
    messages_.push_back(title + '/' + std::to_string(style) + '/' + prompt);
    return MessageResult::Ok;
  };

  void SetMachineValue(const char* key, const char* name, const std::string& text, DWORD type = REG_SZ) {
    registry_.SetRegValue(text, registry_.CreateRegKey(HKEY_LOCAL_MACHINE, key), name, type);
  }

  /// Whether the editor that takes the place of the system's program came up, in a window of ordinary size.
  static bool ClosesStartedProgram() {
    HWND window = nullptr;
    const auto isUp = [&] { return (window = FindWindowA("Notepad", nullptr)) != nullptr; };
    if (!WaitUntil([&] { return isUp() && IsWindowVisible(window) != 0; })) return false;
    const bool isOrdinary = IsIconic(window) == 0 && IsZoomed(window) == 0;
    PostMessageA(window, WM_CLOSE, 0, 0);
    return WaitUntil([&] { return IsWindow(window) == 0; }) && isOrdinary;
  }
};

TEST_F(AboutBoxTest, KeyValuesAreReadWithoutMessages) {
  EXPECT_EQ(GetKeyValue(HKEY_LOCAL_MACHINE, kPathKey, "PATH"), std::nullopt);
  for (const std::size_t length : {0U, 1U, 1023U, 1024U}) {
    const std::string text(length, 'p');
    SetMachineValue(kPathKey, "PATH", text);
    const auto read = GetKeyValue(HKEY_LOCAL_MACHINE, kPathKey, "PATH");
    EXPECT_EQ(read, length < 1024 ? std::optional(text) : std::nullopt) << length;
  }
  EXPECT_EQ(GetKeyValue(HKEY_LOCAL_MACHINE, kPathKey, "OTHER"), std::nullopt);
  const UniqueRegKey key = registry_.OpenRegKey(HKEY_LOCAL_MACHINE, kPathKey, false);
  RegSetValueExA(key.get(), "BARE", 0, REG_SZ, reinterpret_cast<const BYTE*>("abc"), 3);
  EXPECT_EQ(GetKeyValue(HKEY_LOCAL_MACHINE, kPathKey, "BARE"), "abc");
}

TEST_F(AboutBoxTest, TheSystemsInformationProgramIsFoundThroughTheRegistry) {
  const std::vector<std::string> unavailable = {
      "Brennic Snipstore 2.0/0/System Information Is Unavailable At This Time"};
  const TemporaryFolder folder;
  char windows[MAX_PATH]{};
  GetWindowsDirectoryA(windows, sizeof windows);
  const std::string program = std::string(windows) + "\\notepad.exe";
  StartSysInfo(showMessage_);
  EXPECT_EQ(messages_, unavailable) << "no value at all";

  SetMachineValue(kFolderKey, "MSINFO", folder.path());
  messages_.clear();
  StartSysInfo(showMessage_);
  EXPECT_EQ(messages_, unavailable) << "a folder without the program";

  messages_.clear();
  ASSERT_NE(CopyFileA(program.c_str(), folder.File("MSINFO32.EXE").c_str(), TRUE), 0);
  // Wine starts its own MSINFO32.EXE in place of a copy that bears the mark of its programs.
  folder.Write("MSINFO32.EXE", folder.Read("MSINFO32.EXE").replace(0x40, 32, 32, ' '));
  StartSysInfo(showMessage_);
  EXPECT_TRUE(ClosesStartedProgram()) << "from the folder";

  SetMachineValue(kPathKey, "PATH", folder.File("missing.exe"));
  StartSysInfo(showMessage_);

  folder.Write("a note.txt", "");
  const std::string argument = " " + folder.File("a note.txt");
  for (const auto& [path, type] :
       std::vector<std::pair<std::string, DWORD>>{{program, REG_SZ},
                                                  {program + argument, REG_SZ},
                                                  {'"' + program + '"' + argument, REG_SZ},
                                                  {"%SystemRoot%\\notepad.exe", REG_EXPAND_SZ}}) {
    SetMachineValue(kPathKey, "PATH", path, type);
    StartSysInfo(showMessage_);
    EXPECT_TRUE(ClosesStartedProgram()) << path;
  }
  EXPECT_EQ(FindWindowA("Notepad", nullptr), nullptr) << "a missing program has no stand-in";
  EXPECT_EQ(messages_, std::vector<std::string>());
}

TEST_F(AboutBoxTest, KeysAndMouseReachItsButtons) {
  const TestOwner owner;
  CaptionPainter captions;
  const auto show = [&] { frmAbout(showMessage_, captions).ShowMe(owner.get()); };
  const auto shown = [&](const std::function<void(HWND)>& act) { DriveModal(kTitle, show, act); };
  shown([](HWND box) {
    EXPECT_EQ(WindowText(GetDlgItem(box, frmAbout::kVersionId)), "Version " SNIPSTORE_VERSION_TEXT);
    EXPECT_NE(SendDlgItemMessageA(box, frmAbout::kImageId, STM_GETICON, 0, 0), 0);
    PressKey(VK_RETURN);
  });
  shown([](HWND) { PressKey(VK_ESCAPE); });
  shown([](HWND box) { PostMessageA(box, WM_SYSCOMMAND, SC_CLOSE, 0); });
  EXPECT_EQ(messages_.size(), 0U);
  shown([&](HWND box) {
    PressKey('S', {VK_MENU});
    EXPECT_TRUE(WaitUntil([&] { return messages_.size() == 1; }, 10000, [] {}));
    PressKey(VK_TAB), PressKey(VK_SPACE);
    EXPECT_TRUE(WaitUntil([&] { return IsWindow(box) == 0; }, 10000, [] {}));
  });
}

}  // namespace
}  // namespace snip::test
