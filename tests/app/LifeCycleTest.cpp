#include <gtest/gtest.h>
#include <shlwapi.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "library/BnsFormat.h"
#include "platform/Win32Text.h"
#include "tests/app/Program.h"
#include "ui/main/MainWindowKeys.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {
namespace {

constexpr int kSave = int{Command::kMainButton} + int{MainButton::kSaveLibrary};

/// The main window of a process, driven by messages alone: they are answered before they return.
class Remote {
 public:
  explicit Remote(HANDLE process) : process_(GetProcessId(process)) {
    WaitUntil([this] {
      EnumWindows(&TakeMainWindow, reinterpret_cast<LPARAM>(this));
      return window_ != nullptr && SendMessageA(Control(frmAddIn::kListId), LB_GETCURSEL, 0, 0) == 0;
    });
  }

  HWND window() const { return window_; }
  HWND Control(int id) const { return FindControl(window_, id); }
  HWND Code() const { return GetDlgItem(Control(frmAddIn::kCodeId), BnRichEdit::kControlId); }
  std::string Description() const { return WindowText(Control(frmAddIn::kDescriptionId)); }
  void Describe(const std::string& text) const { Replace(Control(frmAddIn::kDescriptionId), text); }
  static void Replace(HWND field, const std::string& text) {
    SendMessageA(field, EM_SETSEL, 0, -1);
    SendMessageA(field, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text.c_str()));
  }
  void Save() const { SendMessageA(window_, WM_COMMAND, kSave, 0); }
  void Press(int button) const {
    SendMessageA(window_, WM_COMMAND, static_cast<WPARAM>(Command::kMainButton) + static_cast<WPARAM>(button),
                 0);
  }

 private:
  static BOOL CALLBACK TakeMainWindow(HWND window, LPARAM self) {
    auto* remote = reinterpret_cast<Remote*>(self);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    char name[20]{};
    GetClassNameA(window, name, sizeof name);
    if (process != remote->process_ || std::string(name) != "frmAddIn" || IsWindowVisible(window) == 0) {
      return TRUE;
    }
    remote->window_ = window;
    return FALSE;
  }

  DWORD process_;
  HWND window_ = nullptr;
};

class LifeCycleTest : public testing::Test {
 protected:
  LifeCycleTest() { program_.MarkAsRunBefore(); }

  /// The file of the library "Lib" after the first snippet has been given that description.
  static std::string Bytes(const std::string& description, int snippets = 1) {
    std::vector<Snippet> library(static_cast<std::size_t>(snippets), DefaultSnippet());
    for (Snippet& snippet : library) snippet.Code = snippets > 1 ? std::string(20000, 'x') : "'code";
    library.front().Description = description;
    return WriteBns(library);
  }
  std::string Stored() const { return program_.folder().Read("Lib.bns"); }
  void Close(const Remote& remote) {
    PostMessageA(remote.window(), WM_CLOSE, 0, 0);
    ASSERT_TRUE(program_.WaitForEnd());
    EXPECT_EQ(program_.ExitCode(), 0U);
  }

  Program program_;
};

TEST_F(LifeCycleTest, KilledAtAnyMomentTheNextStartFindsOneOfTheLastTwoSaves) {
  constexpr int snippets = 200;  // four megabytes
  const char* wanted = std::getenv("SNIPSTORE_KILLS");
  const int kills = wanted != nullptr ? std::atoi(wanted) : 10;
  std::mt19937 random{std::random_device{}()};
  int before = 0, after = 0, missing = 0, cut = 0;
  for (int kill = 0; kill < kills; ++kill) {
    program_.folder().Write("Lib.bns", Bytes("v0", snippets));
    program_.Start();
    const auto moment = static_cast<DWORD>(random() % 1000);
    std::atomic<bool> killed = false;
    int saved = 0;  // the last save known to be complete
    {
      const Remote remote(program_.process());
      ASSERT_NE(remote.window(), nullptr);
      std::thread killer([&] {
        Sleep(moment);
        killed = true;
        program_.Kill();
      });
      for (;;) {
        remote.Describe("v" + std::to_string(saved + 1));
        remote.Save();
        if (killed) break;
        ++saved;
      }
      killer.join();
    }
    SCOPED_TRACE("killed after " + std::to_string(moment) + " ms and " + std::to_string(saved) + " saves");
    const std::string last = Bytes("v" + std::to_string(saved), snippets);
    const std::string next = Bytes("v" + std::to_string(saved + 1), snippets);
    const bool there = program_.folder().Has("Lib.bns");
    const std::string left = there ? Stored() : "";
    ++(!there ? missing : left == next ? after : left == last ? before : cut);
    program_.Start();
    const Remote again(program_.process());
    ASSERT_NE(again.window(), nullptr);
    // A damaged file is completed.
    EXPECT_TRUE(Stored() == (left == last ? last : next)) << Stored().size() << " bytes";
    Close(again);
  }
  std::printf("%d kills: %d before the save, %d after it, %d missing, %d cut short\n", kills, before, after,
              missing, cut);
}

TEST_F(LifeCycleTest, TwoInstancesSaveOneLibraryInTurnAndAtOnce) {
  program_.folder().Write("Lib.bns", Bytes("start"));
  program_.Start();
  const Remote first(program_.process());
  const UniqueFile other = program_.StartAnother();
  const Remote second(other.get());
  ASSERT_TRUE(first.window() != nullptr && second.window() != nullptr && first.window() != second.window());
  for (int turn = 0; turn < 3; ++turn) {
    for (const auto& [remote, name] : {std::pair(&first, "first "), {&second, "second "}}) {
      const std::string text = name + std::to_string(turn);
      remote->Describe(text);
      remote->Save();
      ASSERT_EQ(Stored(), Bytes(text));
    }
  }
  const auto saveOften = [](const Remote& remote, const std::string& text) {
    remote.Describe(text);
    for (int i = 0; i < 30; ++i) remote.Save();
  };
  {
    const Driver driver([&] { saveOften(first, "one"); });
    saveOften(second, "two");
  }
  EXPECT_TRUE(Stored() == Bytes("one") || Stored() == Bytes("two")) << Stored();
  PostMessageA(second.window(), WM_CLOSE, 0, 0);
  EXPECT_EQ(WaitForSingleObject(other.get(), 15000), WAIT_OBJECT_0);
  Close(first);
}

TEST_F(LifeCycleTest, TheEndOfTheSessionAsksSavesAndWaitsForTheAnswer) {
  program_.folder().Write("Lib.bns", Bytes("start"));
  for (const bool saves : {false, true}) {
    SCOPED_TRACE(saves ? "yes" : "no");
    program_.Start();
    const Remote remote(program_.process());
    ASSERT_NE(remote.window(), nullptr);
    remote.Describe("changed");
    const Driver driver([&] {
      HWND box = nullptr;
      WaitUntil([&] {
        box = GetLastActivePopup(remote.window());
        return box != remote.window() && IsWindowVisible(box) != 0;
      });
      // While the question is open a second one is refused, not asked on top.
      EXPECT_EQ(SendMessageA(remote.window(), WM_QUERYENDSESSION, 0, 0), FALSE);
      PostMessageA(GetDlgItem(box, saves ? IDYES : IDNO), BM_CLICK, 0, 0);
    });
    EXPECT_EQ(SendMessageA(remote.window(), WM_QUERYENDSESSION, 0, 0), TRUE);
    EXPECT_EQ(Stored(), Bytes(saves ? "changed" : "start"));
    SendMessageA(remote.window(), WM_ENDSESSION, FALSE, 0);  // another program would not end
    EXPECT_TRUE(program_.Running());
    EXPECT_EQ(remote.Description(), "changed");
    SendMessageA(remote.window(), WM_ENDSESSION, TRUE, 0);
    ASSERT_TRUE(program_.WaitForEnd());
    EXPECT_EQ(program_.ExitCode(), 0U);
    EXPECT_EQ(Stored(), Bytes(saves ? "changed" : "start"));
  }
}

TEST_F(LifeCycleTest, StormsOfSystemChangesLeaveAnEditAsItWas) {
  program_.folder().Write("Lib.bns", Bytes("start"));
  program_.Start();
  const Remote remote(program_.process());
  ASSERT_NE(remote.window(), nullptr);
  remote.Press(MainButton::kEditSnippet);
  Remote::Replace(remote.Code(), "in the midst of an edit");
  // The place that goes with a change of the resolution is the receiver's to read.
  const RECT place{100, 100, 900, 700};
  void* remotePlace =
      VirtualAllocEx(program_.process(), nullptr, sizeof place, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
  ASSERT_NE(WriteProcessMemory(program_.process(), remotePlace, &place, sizeof place, nullptr), 0);
  constexpr UINT themeChanged = 0x031A;
  constexpr UINT dpiChanged = 0x02E0;
  struct Change {
    UINT message;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
  };
  const std::array<Change, 9> storm = {
      {{WM_DISPLAYCHANGE, 32, MAKELPARAM(640, 480)},
       {WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS},
       {WM_SYSCOLORCHANGE},
       {WM_FONTCHANGE},
       {themeChanged},
       {WM_PALETTECHANGED},
       {dpiChanged, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(remotePlace)},
       {WM_DISPLAYCHANGE, 8, MAKELPARAM(1920, 1080)},
       {dpiChanged, MAKEWPARAM(96, 96), reinterpret_cast<LPARAM>(remotePlace)}}};
  for (int round = 0; round < 100; ++round) {
    for (const auto& [message, wParam, lParam] : storm)
      PostMessageA(remote.window(), message, wParam, lParam);
  }
  EXPECT_NE(SendMessageTimeoutA(remote.window(), WM_NULL, 0, 0, SMTO_NORMAL, 20000, nullptr), 0)
      << "still busy with the storm";
  EXPECT_EQ(WindowText(remote.Code()), "in the midst of an edit");
  EXPECT_EQ(remote.Description(), "start");
  remote.Save();
  EXPECT_NE(Stored().find("\r\nin the midst of an edit\r\n...\r\n"), std::string::npos);
  Close(remote);
}

TEST_F(LifeCycleTest, WithoutTheRichEditLibraryCodeIsEditedInAPlainField) {
  const std::string code(100000, 'y');
  program_.folder().Write("Lib.bns", Bytes("start"));
  constexpr const char* wineSettings = "Software\\Wine\\AppDefaults\\BnSnipstore2.exe";
  SHSetValueA(HKEY_CURRENT_USER, (std::string(wineSettings) + "\\DllOverrides").c_str(), "riched20", REG_SZ,
              "", 1);
  program_.Start();
  const Remote remote(program_.process());
  SHDeleteKeyA(HKEY_CURRENT_USER, wineSettings);
  ASSERT_NE(remote.window(), nullptr);
  char name[20]{};
  GetClassNameA(remote.Code(), name, sizeof name);
  if (std::string(name) != "Edit") GTEST_SKIP() << "the system does not hide its libraries";
  EXPECT_EQ(WindowText(remote.Code()), "'code");
  remote.Press(MainButton::kEditSnippet);
  Remote::Replace(remote.Code(), code);  // longer than what a plain field takes by itself
  remote.Save();
  EXPECT_NE(Stored().find("\r\n" + code + "\r\n"), std::string::npos);
  Close(remote);
}

}  // namespace
}  // namespace snip::test
