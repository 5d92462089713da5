// How environments connect to the add-in, find it and leave it.

#include <shlwapi.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <set>
#include <tuple>

#include "app/ComServer.h"
#include "tests/app/AddInDriver.h"
#include "tests/support/TestRegistry.h"

namespace snip::test {
namespace {

INSTANTIATE_TEST_SUITE_P(Vb5, AnyHostTest, testing::Values(""));
INSTANTIATE_TEST_SUITE_P(Vba, AnyHostTest, testing::Values("vba"));

TEST_F(AddInTest, LoadingAddsOneEntryAndUnloadingRemovesIt) {
  for (const std::string environment :
       {"", ", bynumber", ", newer", ", newer, bynumber", ", vba", ", vba, bynumber", ", vba, nobar"}) {
    SCOPED_TRACE(environment);
    HostProcess loading;
    const std::string answers = loading.Ask(
        "repeat 1 entry Brennic Snipstore 2.0, entry Other, entry Brennic Snipstore 2.0" + environment);
    EXPECT_EQ(answers.find_first_not_of(','), std::string::npos) << answers;
    for (const char* step : {"connect 1", "complete", "update", "connect 1", "shutdown"})
      Expect(loading, {{step, "0"}, {"entries", std::string("[Other]") + kEntry}});
    EXPECT_EQ(FindVisibleWindow(kTitle), nullptr);
    EXPECT_EQ(Servers(), environment.starts_with(", vba") ? 0U : 1U)
        << "a click starts the program for VBA's";
    Disconnect(loading);
    EXPECT_EQ(loading.Ask("entries"), "[Other]");
    EXPECT_TRUE(WaitUntil([] { return Servers() == 0U; }));
  }
}

TEST_F(AddInTest, AnUntickedAddInIsTickedAgainAfterAnyTime) {
  Expect(host, {{"create", "0"}, {"release", ""}});  // an object that is only made leaves nothing
  EXPECT_TRUE(WaitUntil([] { return Servers() == 0U; }));
  Expect(host, {{"connect 0", "0"}, {"disconnect 1", "0"}});
  // The time after which a server without an environment gives up.
  PostMessageA(FindWindowExA(HWND_MESSAGE, nullptr, "SnipstoreServerLife", nullptr), WM_TIMER, 1, 0);
  Expect(host, {{"connect 0", "0"}, {"entries", kEntry}, {"disconnect 1", "0"}});
  host.Kill();  // which the object does not outlive
}

TEST_P(AnyHostTest, ChoosingTheEntryOpensTheWindowAndClosingHidesIt) {
  const HWND window = OpenWindow(host);
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(WaitUntil([&] { return IsForeground(window); }));
  for (const bool byClose : {true, false}) {
    if (!byClose && IsVba()) continue;  // which does not see the program's object
    byClose ? void(PostMessageA(window, WM_CLOSE, 0, 0)) : Expect(host, {{"call HIDE", "0"}});
    ASSERT_TRUE(WaitUntil([&] { return IsWindowVisible(window) == 0; }));
    EXPECT_NE(IsWindow(window), FALSE) << "it stays loaded";
    host.Ask("takefront");
    EXPECT_EQ(host.Ask(byClose ? "click" : "call Show"), byClose ? "" : "0");
    ASSERT_TRUE(WaitUntil([&] { return IsForeground(window); }));
  }
  SendMessageA(window, WM_SYSCOMMAND, SC_MINIMIZE, 0);
  host.Ask("takefront");
  Expect(host, {{"click 0", ""}});
  EXPECT_TRUE(WaitUntil([&] { return IsIconic(window) == 0 && IsForeground(window); }));
  Disconnect(host);
  EXPECT_TRUE(WaitUntil([&] { return IsWindow(window) == 0 && host.Ask("entries").empty(); }));
}

TEST_F(AddInTest, StartedFromOutsideItShowsAtOnceAndAddsNoEntry) {
  enum class End { Disconnection, Close, DeathDuringTheQuestion };
  for (const End end : {End::Disconnection, End::Close, End::DeathDuringTheQuestion}) {
    SCOPED_TRACE(static_cast<int>(end));
    const bool released = end != End::Disconnection;
    HostProcess outside;
    outside.Ask(kFormWithA);
    EXPECT_EQ(outside.Ask("connect 2"), "0");
    if (released) outside.Ask("release");
    const HWND window = program_.MainWindow();
    ASSERT_NE(window, nullptr);
    const UniqueKernelObject server(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, ServerIds().at(0)));
    EXPECT_EQ(outside.Ask("entries"), "");
    PasteInto(outside, window);
    if (end == End::DeathDuringTheQuestion) Describe(window);
    released ? void(PostMessageA(window, WM_CLOSE, 0, 0)) : Disconnect(outside);
    if (end == End::DeathDuringTheQuestion) {
      EXPECT_TRUE(WaitUntil([&] { return WindowsOver(window).size() == 1U; }));
      outside.Kill();
      EXPECT_TRUE(WaitUntil([] { return !Connected(); }));
      EXPECT_EQ(CloseMessage(window, IDYES), kQuestion);
    }
    EXPECT_TRUE(WaitUntil([] { return Servers() == 0U; }));
    DWORD exitCode = STILL_ACTIVE;
    GetExitCodeProcess(server.get(), &exitCode);
    EXPECT_EQ(exitCode, 0U);
    if (end != End::DeathDuringTheQuestion) Expect(outside, {{"references", "0"}});
  }
  EXPECT_TRUE(Saved("changed d1"));
}

TEST_F(AddInTest, AMessageOfTheFirstShowBelongsToTheWindow) {
  program_.folder().Write("My Great Lib.bns", "BNS1.0\r\nFirst\r\nd1\r\nBeep\r\n..\r\n");
  EXPECT_EQ(host.Ask("connect 0"), "0");
  for (const char* time : {"at first", "again"}) {
    SCOPED_TRACE(time);
    HWND window = nullptr;
    HWND message = nullptr;
    Expect(host, {{"takefront", "yes"}, {"click", ""}});
    EXPECT_TRUE(WaitUntil([&] {
      window = FindWindowA("frmAddIn", nullptr);
      message = GetLastActivePopup(window);
      return IsWindowVisible(window) != 0 && message != window && IsForeground(message);
    }));
    EXPECT_EQ(GetWindow(message, GW_OWNER), window);
    EXPECT_EQ(IsWindowEnabled(window), FALSE);
  }
}

TEST_P(AnyHostTest, TwoEnvironmentsShareTheProcessAndTheWindow) {
  for (const bool firstLeavesFirst : {true, false}) {
    SCOPED_TRACE(firstLeavesFirst);
    HostProcess first(GetParam());
    HostProcess second(GetParam());
    const HWND window = OpenWindow(first, kFormWithA);
    EXPECT_EQ(OpenWindow(second, "module Form1 1 b"), window);
    EXPECT_EQ(Servers(), 1U);
    PasteInto(second, window, "Sub A()|  Beep|End Sub|b|");
    EXPECT_EQ(first.Ask("text Form1"), "a|");
    // The second one has it now.
    if (firstLeavesFirst && !IsVba()) Expect(first, {{"call Hide", "0"}});
    Disconnect(firstLeavesFirst ? first : second);
    EXPECT_NE(IsWindowVisible(window), FALSE);
    if (!firstLeavesFirst) PasteInto(first, window);
    Disconnect(firstLeavesFirst ? second : first);
    EXPECT_TRUE(WaitUntil([&] { return IsWindow(window) == 0; }));
  }
}

TEST_F(AddInTest, InVbasEditorTheEntryComesBackAndALostProgramIsStartedAgain) {
  HostProcess editor("vba");
  editor.Ask("hook CommandBarControls.Add 80010001");
  Expect(editor, {{"connect 1", "0"},
                  {"hook CommandBarControls.Add off", "hit"},
                  {"entries", ""},
                  {"complete", "0"},
                  {"shutdown", "0"},  // which is cancelled
                  {"entries", kEntry}});
  // The first click finds a program that is about to end.
  const ComApartment apartment;
  ServerLife life(INFINITE, INFINITE);
  std::optional<ComServer> ending;
  ending.emplace(kConnectClassId, life, [&](REFIID /*iid*/, void** /*object*/) {
    ending.reset();
    return CO_E_SERVER_STOPPING;
  });
  for (int time = 0; time < 2; ++time) {
    editor.Ask("click");
    ASSERT_FALSE(ending) << "not asked";
    ASSERT_NE(program_.MainWindow(), nullptr);
    // Ends the program as one whose environment has died; what is killed stays known to Wine's COM.
    PostMessageA(FindWindowExA(HWND_MESSAGE, nullptr, "SnipstoreConnection", nullptr), WM_APP + 2, 0, 0);
    EXPECT_TRUE(WaitUntil([] { return Servers() == 0U; }));
  }
  Disconnect(editor);
}

TEST_F(AddInTest, RegisteringAndUnregisteringLeavesTheRegistryAsItWas) {
  const std::string keys[] = {R"(Software\Microsoft\Visual Basic\6.0\Addins\BnSnipstore2.Connect)",
                              sizeof(void*) == 8
                                  ? R"(Software\Microsoft\VBA\VBE\6.0\Addins64\BnSnipstoreVba64.Connect)"
                                  : R"(Software\Microsoft\VBA\VBE\6.0\Addins\BnSnipstoreVba32.Connect)"};
  const auto registry = [] {
    return std::tuple(RegistryContents(HKEY_LOCAL_MACHINE, "Software\\Classes"),
                      RegistryContents(HKEY_CURRENT_USER, "Software\\Classes"),
                      RegistryContents(HKEY_CURRENT_USER, "Software\\Microsoft"));
  };
  RunSilently("-unregserver");
  EXPECT_EQ(Program::AddInEntry(), "");
  EXPECT_EQ(RegistryContents(HKEY_CURRENT_USER, R"(Software\Microsoft\VBA)"), std::set<std::string>{});
  const auto before = registry();
  RunSilently("/regserver");
  EXPECT_EQ(Program::AddInEntry(), "0");
  EXPECT_EQ(Program::ServerCommand(), "\"" + program_.folder().File("BnSnipstore2.exe") + "\"");
  // A user who has it loaded at every start keeps that setting.
  WritePrivateProfileStringA("Add-Ins32", "BnSnipstore2.Connect", "1", "vbaddin.ini");
  const DWORD load = 1;
  for (const std::string& key : keys) {
    EXPECT_EQ(Program::ListEntry(key), "Brennic Snipstore 2.0 0");
    SHSetValueA(HKEY_CURRENT_USER, key.c_str(), "LoadBehavior", REG_DWORD, &load, sizeof load);
  }
  RunSilently("/regserver");
  EXPECT_EQ(Program::AddInEntry(), "1");
  for (const std::string& key : keys) EXPECT_EQ(Program::ListEntry(key), "Brennic Snipstore 2.0 1");
  // Another copy keeps the lists, but not what is this one's in VBA's editor.
  const std::string command = Program::ServerCommand();
  for (const std::string& server : {std::string("C:\\windows\\system32\\kernel32.dll"), command}) {
    Program::SetServerCommand(server);
    RunSilently("/UnregServer");
    EXPECT_EQ(Program::AddInEntry(), server == command ? "" : "1");
    EXPECT_EQ(RegistryContents(HKEY_CURRENT_USER, keys[1]), std::set<std::string>{});
    EXPECT_EQ(std::get<1>(registry()), std::get<1>(before)) << "the library's class";
  }
  EXPECT_TRUE(registry() == before);
}

TEST_F(AddInTest, VbasEditorLoadsAndUnloadsItWithoutATrace) {
  HostProcess editor("vba");
  const std::string rounds = "connect 1, complete, shutdown, disconnect 0, references, release";
  EXPECT_EQ(editor.Ask("repeat 10 " + rounds), "0,0,0,0,0,,");
  EXPECT_EQ(editor.Ask("repeat 3 connect 1, click, disconnect 0, references, release"), "0,,0,0,,");
  const ProcessUse before = UseOf(editor.Id());
  EXPECT_EQ(editor.Ask("repeat 500 " + rounds), "0,0,0,0,0,,");
  const ProcessUse after = UseOf(editor.Id());
  EXPECT_EQ(after.handles, before.handles);
  EXPECT_LT(after.privateBytes, before.privateBytes + (1 << 18));
  EXPECT_TRUE(WaitUntil([] { return Servers() == 0U; }));
}

TEST_F(AddInTest, RoundsLeaveNothing) {
  const char* given = std::getenv("SNIPSTORE_ROUNDS");
  const int rounds = given != nullptr ? std::atoi(given) : 12;
  const int inOneProcess = rounds * 2 / 3;
  HostProcess other;
  EXPECT_EQ(other.Ask("connect 1"), "0");
  std::vector<ProcessUse> uses;  // of the process that goes on, after each round
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    const HWND window = OpenWindow(host, kFormWithA);
    ASSERT_NE(window, nullptr);
    PasteInto(host, window);
    Disconnect(host);
    ASSERT_TRUE(WaitUntil([&] { return IsWindow(window) == 0; }));
    ASSERT_EQ(host.Ask("entries"), "");
    ASSERT_TRUE(round < inOneProcess || WaitUntil([] { return Servers() == 0U; }));
    if (round < inOneProcess) uses.push_back(UseOf(ServerIds().at(0)));
    // With the other one the process goes on; without it a new one starts each time.
    if (round == inOneProcess - 1) Disconnect(other);
  }
  // A thread that is just at work, or one more that COM keeps, shows in single rounds, a leak in each of
  // them. Wine's COM itself keeps a handle and some kilobytes of each connection.
  const auto usualGrowth = [&](auto ProcessUse::*held) {
    std::vector<long> growths;
    for (std::size_t i = 3; i < uses.size(); ++i)  // behind what the first rounds make once
      growths.push_back(static_cast<long>(uses[i].*held) - static_cast<long>(uses[i - 1].*held));
    std::ranges::sort(growths);
    return growths.at(growths.size() / 2);
  };
  EXPECT_LT(usualGrowth(&ProcessUse::handles), 2);
  EXPECT_LT(usualGrowth(&ProcessUse::privateBytes), 1 << 15);
}

}  // namespace
}  // namespace snip::test
