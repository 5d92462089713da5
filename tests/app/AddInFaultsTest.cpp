// Environments that fail, leave or die while the add-in works with them.

#include <algorithm>

#include "tests/app/AddInDriver.h"

namespace snip::test {
namespace {

using namespace Command;

constexpr const char* kRemoval = "CommandBarControl.Delete";

/// Visual Basic 6's calls are the older one's but by the newer interface.
class AnyFaultyHostTest : public AnyHostTest {
 protected:
  /// The client may still have taken its entry away after a disconnection, but called nothing else.
  void ExpectNoCallsAfterwards() {
    const std::string after = host.Ask("after");
    EXPECT_TRUE(after.empty() || after == kRemoval + std::string(" ")) << after;
  }
};
INSTANTIATE_TEST_SUITE_P(Vb5, AnyFaultyHostTest, testing::Values(""));
INSTANTIATE_TEST_SUITE_P(Vb6, AnyFaultyHostTest, testing::Values("newer"));
INSTANTIATE_TEST_SUITE_P(Vba, AnyFaultyHostTest, testing::Values("vba"));

TEST_P(AnyFaultyHostTest, FailuresAndADisconnectionWhileConnectingAreSwallowed) {
  host.Ask("entry Other");
  std::vector<std::string> members{"VBE.CommandBars",           "CommandBars.Item",
                                   "CommandBar.Controls",       "CommandBarControls.Count",
                                   "CommandBarControls.Item",   "CommandBarControls.Add",
                                   "CommandBarControl.Caption", "Events.Advise"};
  for (const char* member :
       IsVba() ? std::vector{"CommandBarControl.Tag", "CommandBars.ActiveMenuBar", "MenuBar.FindControl",
                             "CommandBarPopup.CommandBar"}
               : std::vector{"VBE.Events", "Events.CommandBarEvents", "VBE.MainWindow", "Window.HWnd"}) {
    members.emplace_back(member);
  }
  members.emplace_back(kRemoval);
  for (const std::string& member : members) {
    if (member == "CommandBars.ActiveMenuBar") host.Ask("nobar");
    for (const std::string failure : {"80004005", "80020009 with words", "nothing", "disconnect"}) {
      if (member == kRemoval && failure == "disconnect") continue;
      const std::string hook = std::string("hook ").append(member).append(" ").append(failure);
      SCOPED_TRACE(hook);
      host.Ask(hook);
      Expect(host, {{"connect 0", "0"}});
      if (failure == "disconnect") {
        ExpectNoCallsAfterwards();
        Expect(host, {{"references", "0"}, {"entries", "[Other]"}});
      }
      Expect(host, {{"disconnect 0", "0"}, {"references", "0"}});
      EXPECT_EQ(host.Ask("hook " + member + " off"), "hit");
      EXPECT_TRUE(member == kRemoval || host.Ask("entries") == "[Other]") << host.Ask("entries");
    }
  }
  Expect(host, {{"connect 0", "0"}, {"disconnect 1", "0"}, {"release", ""}, {"connectnothing", "0"}});
  if (!IsVba()) {
    Expect(host, {{"call Show", "0"}});
    EXPECT_NE(program_.MainWindow(), nullptr);
  }
}

TEST_P(AnyFaultyHostTest, ADisconnectionMayComeWhileTheEnvironmentIsWaitedFor) {
  for (const std::string member :
       {"VBE.ActiveCodePane", "CodePane.GetSelection", "CodeModule.InsertLines", "VBE.ActiveVBProject",
        "VBComponents.Add", "VBComponent.Name", "VBComponent.CodeModule"}) {
    SCOPED_TRACE(member);
    const bool pastingAll = member.starts_with("VBComponent") || member == "VBE.ActiveVBProject";
    const HWND window = OpenWindow(host, kFormWithA);
    host.Ask("hook " + member + " disconnect");
    Choose(window, pastingAll ? kNewModule : kPasteCode);
    EXPECT_TRUE(WaitUntil([&] { return IsWindow(window) == 0 && host.Ask("references") == "0"; }));
    ExpectNoCallsAfterwards();
    Expect(host, {{"entries", ""}, {("hook " + member + " off").c_str(), "hit"}});
  }
}

TEST_P(AnyFaultyHostTest, AnEnvironmentThatDiesIsDisconnected) {
  for (const std::string steps :
       {"connect 0", "connect 0, click",
        // One that cannot be watched is asked for signs of life.
        "hook VBE.MainWindow 80004005, connect 0, click",
        // It can also die while it is waited for.
        "hook CodePane.GetSelection exit, connect 0, click", "hook CommandBarControls.Add exit, connect 0"}) {
    const bool clicked = steps.ends_with("click");
    const bool byItself = steps.find("exit") != std::string::npos;
    if (IsVba() && !clicked) continue;  // whose program comes with the click
    SCOPED_TRACE(steps);
    HostProcess dying(GetParam());
    dying.Ask(kFormWithA);
    dying.Ask("repeat 1 " + steps);
    ASSERT_TRUE(!clicked || program_.MainWindow() != nullptr);
    if (clicked && byItself) Choose(program_.MainWindow(), kPasteCode);
    EXPECT_TRUE(byItself ? WaitUntil([&] { return !dying.Running(); }) : Servers() == 1U);
    dying.Kill();
    EXPECT_TRUE(WaitUntil([] { return Servers() == 0U; }));
  }
}

TEST_P(AnyFaultyHostTest, ABusyEnvironmentIsAskedAgain) {
  const HWND window = OpenWindow(host, kFormWithA);
  host.Ask("busy 3");
  PasteInto(host, window);
  // But not for ever, and what the palette delivers does not go elsewhere then.
  host.Ask("busy -1");
  EXPECT_TRUE(WaitUntil([&] { return host.Ask("takefront"), host.Ask("front") == "yes"; }));
  PostMessageA(window, WM_HOTKEY, 1, 0);
  EXPECT_TRUE(WaitUntil([] { return IsForeground(FindVisibleWindow("Find Snippets")); }));
  PressKey(VK_RETURN, {VK_CONTROL});
  EXPECT_TRUE(WaitUntil([] { return FindVisibleWindow("Find Snippets") == nullptr; }));
  EXPECT_EQ(CloseMessage(window), "The development environment is busy. Please try again later.");
  host.Ask("busy 0");
}

TEST_P(AnyHostTest, ADisconnectionOffersToSave) {
  const HWND window = OpenWindow(host);
  Describe(window);
  PostMessageA(window, WM_CLOSE, 0, 0);
  EXPECT_TRUE(WaitUntil([&] { return IsWindowVisible(window) == 0; })) << "hidden without a question";
  host.Send("disconnect 1");
  if (!IsVba()) {
    EXPECT_EQ(CloseMessage(window, IDYES), kQuestion);
  }
  EXPECT_EQ(host.Answer(), "0");
  Expect(host, {{"references", "0"}, {"release", ""}});
  if (IsVba()) {  // an Office that exits goes on during the question
    host.Kill();
    EXPECT_TRUE(WaitUntil([] { return !Connected(); }));
    EXPECT_EQ(CloseMessage(window, IDYES), kQuestion);
  }
  EXPECT_TRUE(WaitUntil([&] { return Servers() == 0U && Saved("changed d1"); }));
}

TEST_P(AnyHostTest, ADisconnectionClosesWhateverIsOpen) {
  program_.folder().Write("My Great Lib.bns", "BNS2.0\r\nA\r\n\r\nd1\r\n(,)\r\n<<field>>\r\n...\r\n");
  for (const int command :
       {kMainButton + MainButton::kSettings, kMainButton + MainButton::kNewLibrary,
        kMainButton + MainButton::kOutput, int{kPasteWithFields}, int{kSetAttachment}, int{kOutputMenu}}) {
    SCOPED_TRACE(command);
    const HWND window = OpenWindow(host, command == kPasteWithFields ? kFormWithA : "");
    Choose(window, command);
    std::vector<HWND> open;
    EXPECT_TRUE(WaitUntil([&] { return !(open = WindowsOver(window)).empty(); }));
    Disconnect(host);
    open.push_back(window);
    EXPECT_TRUE(WaitUntil([&] { return std::ranges::none_of(open, &IsWindowVisible); }));
  }
  // The save question does not wait any more, for the disconnection asks it again.
  const HWND window = OpenWindow(host);
  Describe(window);
  const HWND chooser = FindControl(window, frmAddIn::kFilesId);
  PostMessageA(GetParent(chooser), WM_COMMAND, MAKEWPARAM(frmAddIn::kFilesId, CBN_SELCHANGE),
               reinterpret_cast<LPARAM>(chooser));
  EXPECT_TRUE(WaitUntil([&] { return WindowsOver(window).size() == 1U; }));
  host.Send("disconnect 1");
  EXPECT_TRUE(WaitUntil([&] { return WindowsOver(window).size() == 2U; }));
  EXPECT_EQ(CloseMessage(window, IDYES), kQuestion);
  EXPECT_EQ(host.Answer(), "0");
  EXPECT_TRUE(WaitUntil([&] { return IsWindow(window) == 0 && Saved("changed d1"); }));
}

TEST_F(AddInTest, TheQuestionOfASessionsEndOutlivesTheEnvironment) {
  std::string changed = "d1";
  for (const auto& [disconnects, ends] : {std::pair{true, true}, {true, false}, {false, true}}) {
    SCOPED_TRACE(disconnects ? "the environment disconnects" : "the environment dies");
    SCOPED_TRACE(ends ? "the session ends" : "another program stops it");
    HostProcess other;
    const HWND window = OpenWindow(other);
    Describe(window);
    SendNotifyMessageA(window, WM_QUERYENDSESSION, 0, 0);
    EXPECT_TRUE(WaitUntil([&] { return WindowsOver(window).size() == 1U; }));
    EXPECT_TRUE(Connected());
    if (disconnects) Disconnect(other);
    other.Kill();
    // One that has died is missed when it is looked for, and its connection then goes with its window.
    EXPECT_TRUE(WaitUntil([&] { return !Connected(); }));
    EXPECT_EQ(CloseMessage(window, IDYES), kQuestion);
    changed.insert(0, "changed ");
    EXPECT_TRUE(WaitUntil([&] { return Saved(changed); }));
    SendNotifyMessageA(window, WM_ENDSESSION, ends ? TRUE : FALSE, 0);
    // It belongs to nobody any more: it closes as one that was started alone, and what was saved is not asked
    // about.
    if (!ends) PostMessageA(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(WaitUntil([] { return Servers() == 0U; }));
  }
}

}  // namespace
}  // namespace snip::test
