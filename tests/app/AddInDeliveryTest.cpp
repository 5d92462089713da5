// What the add-in delivers to an environment, and takes from it.

#include "library/BnsFormat.h"
#include "platform/Clipboard.h"
#include "platform/Win32Text.h"
#include "tests/app/AddInDriver.h"
#include "ui/dialogs/frmFields.h"
#include "ui/main/MainWindowKeys.h"

namespace snip::test {
namespace {

using namespace Command;

TEST_F(AddInTest, APressDuringADeliveryIsIgnored) {
  const HWND window = OpenWindow(host, kFormWithA);
  ASSERT_TRUE(WaitUntil([&] { return IsForeground(window); }));
  host.Ask("hook CodeModule.InsertLines slow");
  for (int press = 0; press < 2; ++press) PressKey('P', {VK_CONTROL, VK_SHIFT});
  PressKey(VK_F1);  // is handled after what was pressed before
  EXPECT_TRUE(WaitUntil([&] { return WindowsOver(window).size() == 1U; }));
  EXPECT_EQ(host.Ask("text Form1"), kPasted);
}

TEST_P(AnyHostTest, CodeIsFittedIntoTheModuleAndTakenFromIt) {
  program_.folder().Write(
      "My Great Lib.bns",
      "BNS2.0\r\nGuard\r\n\r\n\r\n(,)\r\nIf <<c=x>> Then <<end>>'<<procedure>> <<module>> <<project>>\r\n"
      "  <<selection>>\r\nEnd If\r\n...\r\n");
  host.Ask("module Form1 2 Sub B()|    one|      two|End Sub");
  const HWND window = OpenWindow(host, "select 4");
  Choose(window, kPasteWithFields);
  const HWND dialog = WaitForWindow("Fill In Fields");
  ASSERT_NE(dialog, nullptr);
  SetWindowTextA(FindControl(dialog, frmFields::kFirstFieldId), "y");
  EXPECT_EQ(WindowText(GetDlgItem(dialog, frmFields::kPreviewId)),
            "If y Then 'B Form1 Project1\r\n  one\r\n    two\r\nEnd If");
  Choose(dialog, IDOK);
  ExpectSoon(host, "text Form1",
             "Sub B()|    If y Then 'B Form1 Project1|      one|        two|    End If|End Sub|");
  ExpectSoon(host, "caret", "2 15");

  host.Ask("module Form2 3 x|Sub C()|End Sub|");
  const HWND list = FindControl(window, frmAddIn::kListId);
  EXPECT_TRUE(WaitUntil([&] {  // what comes before the paste is over is ignored
    Choose(window, kTakeCode);
    return WaitUntil([&] { return SendMessageA(list, LB_GETCOUNT, 0, 0) == 2; }, 2000);
  }));
  EXPECT_EQ(ListBoxText(list, 1), "C");
  EXPECT_EQ(WindowText(FindControl(window, BnRichEdit::kControlId)), "Sub C()\r\nEnd Sub");
  host.Send("disconnect 1");
  CloseMessage(window, IDNO);
  host.Answer();
}

TEST_P(AnyHostTest, TheSystemWideKeyDeliversToTheEnvironmentIfThatWasInFrontElseToTheClipboard) {
  const HWND window = OpenWindow(host, kFormWithA);
  ASSERT_TRUE(WaitUntil([&] { return IsForeground(window); }));
  // VBA's editor is but one of its process's windows.
  for (const std::string wanted : {"yes", "sheet", "no"}) {
    const TestFrame other;
    const auto front = [&] {
      return wanted == "no" ? IsForeground(other.get()) : host.Ask("front") == wanted;
    };
    for (const bool leave : {true, false}) {
      int steady = 0;  // an activation that is still under way may take the front once more
      ASSERT_TRUE(WaitUntil([&] {
        steady = front() ? steady + 1 : 0;
        if (steady == 0)
          wanted == "no" ? void(SetForegroundWindow(other.get())) : void(host.Ask("takefront " + wanted));
        return steady == 10;
      }));
      PostMessageA(window, WM_HOTKEY, 1, 0);
      ASSERT_TRUE(WaitUntil([] { return IsForeground(FindVisibleWindow("Find Snippets")); }));
      leave ? PressKey(VK_ESCAPE) : PressKey(VK_RETURN, {VK_CONTROL});
      // Without a window manager the desktop may come to the front as well.
      EXPECT_TRUE(WaitUntil([&] { return front() || GetForegroundWindow() == GetDesktopWindow(); }));
    }
    EXPECT_TRUE(WaitUntil([&] {
      return wanted == "yes" ? host.Ask("text Form1") == kPasted
                             : ClipboardText(other.get()) == "Sub A()\r\n  Beep\r\nEnd Sub";
    })) << wanted;
    CopyToClipboard(other.get(), "");
  }
  EXPECT_EQ(host.Ask("text Form1"), kPasted);
}

TEST_P(AnyHostTest, ANewModuleIsNamedAfterTheLibraryAndHoldsEverySnippet) {
  const HWND window = OpenWindow(host);
  // An edit in progress is part of it.
  SendMessageA(window, WM_COMMAND, kMainButton + MainButton::kEditSnippet, 0);
  SendMessageA(FindControl(window, BnRichEdit::kControlId), EM_REPLACESEL, FALSE,
               reinterpret_cast<LPARAM>("' edited\r\n"));
  Choose(window, kNewModule);
  const std::string expected = "shown ' edited|Sub A()|  Beep|End Sub|Dim x|";
  ExpectSoon(host, "text modMyGreatLib", expected);
  // The name is taken now: the second one keeps its own. A press that comes while the first module is still
  // being made is ignored, so it is repeated, but not so often that it keeps the program from anything else.
  EXPECT_TRUE(WaitUntil([&] {
    Choose(window, kNewModule);
    return WaitUntil([&] { return !WindowsOver(window).empty(); }, 2000);
  }));
  EXPECT_EQ(CloseMessage(window),
            "The new module could not be named 'modMyGreatLib': The development environment answered: Name "
            "conflicts with existing module, project, or object library");
  Expect(host, {{"modules", "[modMyGreatLib][Module2]"}, {"text Module2", expected}});
  host.Send("disconnect 1");
  CloseMessage(window, IDNO);
  host.Answer();
}

TEST_P(AnyHostTest, WhatTheEnvironmentRefusesIsTold) {
  const HWND window = OpenWindow(host);
  const std::string answered = "The development environment answered: ";
  const std::string readOnly = "The module may be read-only. " + answered;
  const std::string nothingThere = "The development environment does not have what is needed for this.";
  const std::string locked = "The project is locked: unlock it in its properties, then try again.";
  const std::string busy = "The development environment is busy. Please try again later.";
  const std::string running = "The project is running or in break mode: end that, then try again.";
  struct Refusal {
    const char* command;
    std::vector<int> pastes = {};  ///< None when the command only makes ready.
    std::string message = {};      ///< Its beginning when the system says the rest.
    bool ofVba = false;
  };
  const Refusal refusals[] = {
      {"nopane", {kPasteCode}, "No code pane is currently active."},
      {"module Form1 1 Sub B()|End Sub"},
      {"mode 1", {kPasteCode, kPasteWithFields, kNewModule}, running, true},
      {"mode 2"},
      {"protection 1", {kPasteCode, kPasteWithFields, kTakeCode, kNewModule}, locked, true},
      {"hook VBComponents.Parent 80004005", {kPasteCode}, locked, true},
      {"protection 0"},
      {"hook CodeModule.InsertLines 800A9C68 Can't edit module",
       {kPasteCode, kPasteWithFields},
       readOnly + "Can't edit module"},
      {"hook CodePane.GetSelection 80004001", {kPasteCode}, answered},
      {"hook CodePane.GetSelection 80010108", {kPasteCode}, answered},  // its object, not the environment
      {"hook CodePane.GetSelection off"},
      {"hook VBE.ActiveCodePane 80010001", {kPasteCode}, busy},
      {"hook VBE.ActiveCodePane 80004005", {kPasteCode}, "No code pane is currently active."},
      {"hook VBComponents.Add 800A9C68 Project is locked", {kNewModule}, answered + "Project is locked"},
      {"hook VBComponents.Add nothing", {kNewModule}, nothingThere},
      {"hook VBComponents.Add off", {kNewModule}, answered + "Can't edit module"},
      {"hook VBComponents.Remove 80004005", {kNewModule}, answered + "Can't edit module"},
      {"hook CodeModule.InsertLines off"},
      {"noproject", {kNewModule}, "No project is currently open."},
  };
  for (const Refusal& refusal : refusals) {
    if (refusal.ofVba && !IsVba()) continue;  // others know neither
    host.Ask(refusal.command);
    for (const int paste : refusal.pastes) {
      Choose(window, paste);
      const std::string message = CloseMessage(window);
      EXPECT_TRUE(refusal.message == answered
                      ? message.starts_with(answered) && message.size() > answered.size()
                      : message == refusal.message)
          << refusal.command << " " << paste << ": " << message;
    }
  }
  Expect(host, {{"text Form1", "Sub B()|End Sub|"},
                {"modules", "[Form1][modMyGreatLib]"},  // the one that could be removed is not there
                {"text modMyGreatLib", "shown "}});
}

}  // namespace
}  // namespace snip::test
