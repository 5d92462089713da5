#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/Win32Text.h"
#include "tests/support/TestDesktop.h"
#include "tests/support/TestRegistry.h"
#include "ui/commandbar/SystemSounds.h"
#include "ui/dialogs/frmMsg.h"

namespace snip::test {
namespace {

constexpr const char* kTitle = "Message box under test";

class MessageBoxTest : public testing::Test {
 protected:
  TestRegistry testRegistry_;
  Registry32 registry_{[](const std::string&, int, const std::string&) { return MessageResult::Ok; }};
  std::vector<std::string> played_;
  SoundEffects sounds_{registry_, [this](const std::string& file) { played_.push_back(file); }};

  void AssignSound(std::string_view event) {
    registry_.SetRegValue(std::string(event),
                          registry_.CreateRegKey(HKEY_CURRENT_USER, DefaultSchemeSoundKey(event)), "",
                          REG_SZ);
  }

  /// Shows a box while `script` works on it from another thread; the script has to close it. When it cannot,
  /// the box is closed so that the test ends.
  MessageResult Show(const std::string& prompt, int style, const std::function<void(HWND)>& script,
                     const std::string& title = kTitle) {
    const Driver driver([&] {
      const std::string shownTitle = title.empty() ? "Brennic Snipstore 2.0" : title;
      const HWND box = WaitForWindow(shownTitle);
      EXPECT_NE(box, nullptr);
      if (box == nullptr) return;
      EXPECT_TRUE(WaitUntil([&] { return IsForeground(box); }));
      script(box);
      if (WaitUntil([&] { return IsWindow(box) == 0; })) return;
      ADD_FAILURE() << "the box stayed open";
      PostMessageA(box, WM_CLOSE, 0, 0);
    });
    return ShowMessage(sounds_, prompt, style, title);
  }

  static std::vector<std::string> ButtonCaptions(HWND box) {
    std::vector<std::string> captions;
    for (const int id : {1, 2, 6, 7}) {
      const HWND button = GetDlgItem(box, id);
      if (button != nullptr) captions.push_back(WindowText(button));
    }
    return captions;
  }
};

TEST_F(MessageBoxTest, StyleChoosesButtonsAndSound) {
  struct Case {
    int style;
    std::vector<std::string> buttons;
    std::string sound;
  };
  const std::vector<Case> cases = {
      {0, {"OK"}, "SystemAsterisk"},        {1, {"OK", "Cancel"}, "SystemAsterisk"},
      {2, {"OK"}, "SystemAsterisk"},        {3, {"OK", "Cancel"}, "SystemAsterisk"},
      {4, {"Yes", "No"}, "SystemAsterisk"}, {5, {"Yes", "No"}, "SystemAsterisk"},
      {16, {"OK"}, "SystemHand"},           {36, {"Yes", "No"}, "SystemQuestion"},
      {48, {"OK"}, "SystemQuestion"},       {64, {"OK"}, "SystemAsterisk"},
  };
  for (const char* event : {"SystemAsterisk", "SystemHand", "SystemQuestion", "SystemExclamation"})
    AssignSound(event);
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.style);
    played_.clear();
    Show("A question", expected.style, [&](HWND box) {
      EXPECT_EQ(ButtonCaptions(box), expected.buttons);
      EXPECT_EQ(WindowText(GetDlgItem(box, frmMsg::kLabelId)), "A question");
      EXPECT_NE(SendDlgItemMessageA(box, frmMsg::kImageId, STM_GETICON, 0, 0), 0);
      PostMessageA(box, WM_CLOSE, 0, 0);
    });
    EXPECT_EQ(played_, std::vector<std::string>{expected.sound});
  }
}

TEST_F(MessageBoxTest, AnEmptyTitleShowsTheApplicationsOwn) {
  EXPECT_EQ(Show(
                "Short", 0, [](HWND) { PressKey(VK_RETURN); }, ""),
            MessageResult::Ok);
}

TEST_F(MessageBoxTest, KeyboardAndMouseGiveTheButtonsResult) {
  struct Case {
    const char* name;
    int style;
    std::function<void(HWND)> act;
    MessageResult result;
  };
  const auto closeBox = [](HWND box) { PostMessageA(box, WM_SYSCOMMAND, SC_CLOSE, 0); };
  const std::vector<Case> cases = {
      {"Enter takes the default, OK", 64, [](HWND) { PressKey(VK_RETURN); }, MessageResult::Ok},
      {"Enter takes the default, Yes", 36, [](HWND) { PressKey(VK_RETURN); }, MessageResult::Yes},
      {"Tab and Enter", 36, [](HWND) { PressKey(VK_TAB), PressKey(VK_RETURN); }, MessageResult::No},
      {"Tab, back, Enter", 1,
       [](HWND) { PressKey(VK_TAB), PressKey(VK_TAB, {VK_SHIFT}), PressKey(VK_RETURN); }, MessageResult::Ok},
      {"Right arrow and blank", 1, [](HWND) { PressKey(VK_RIGHT), PressKey(VK_SPACE); },
       MessageResult::Cancel},
      {"Escape presses Cancel", 1, [](HWND) { PressKey(VK_ESCAPE); }, MessageResult::Cancel},
      {"Escape presses a lone OK", 0, [](HWND) { PressKey(VK_ESCAPE); }, MessageResult::Ok},
      {"Escape chooses nothing between Yes and No", 36,
       [](HWND) { PressKey(VK_ESCAPE), PressKey(VK_TAB), PressKey(VK_RETURN); }, MessageResult::No},
      {"the close box reports OK", 36, closeBox, MessageResult::Ok},
      {"the close box reports OK beside Cancel", 1, closeBox, MessageResult::Ok},
      {"a click on No", 36, [](HWND box) { ClickCentre(GetDlgItem(box, 7)); }, MessageResult::No},
      {"a click on Cancel", 1, [](HWND box) { ClickCentre(GetDlgItem(box, 2)); }, MessageResult::Cancel},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.name);
    EXPECT_EQ(Show("Save changes to 'x'?", expected.style, expected.act), expected.result);
  }
}

TEST_F(MessageBoxTest, PromptsOfAnyLengthFitTheBoxAndTheScreen) {
  std::string paragraph;
  for (int i = 0; i < 120; ++i) paragraph += "quite a few words && an ampersand, ";
  std::string lines;
  for (int i = 0; i < 500; ++i) lines += "line " + std::to_string(i) + "\r\n";
  for (const std::string& prompt :
       {std::string("No"), paragraph, lines, std::string(4000, 'W'), std::string()}) {
    SCOPED_TRACE(prompt.substr(0, 20));
    Show(prompt, 36, [&](HWND box) {
      RECT screen{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
      RECT place{};
      GetWindowRect(box, &place);
      RECT common{};
      IntersectRect(&common, &place, &screen);
      EXPECT_NE(EqualRect(&common, &place), 0) << "the box is not whole on the screen";
      EXPECT_EQ(WindowText(GetDlgItem(box, frmMsg::kLabelId)), prompt);
      RECT client{};
      GetClientRect(box, &client);
      MapWindowPoints(box, nullptr, reinterpret_cast<POINT*>(&client), 2);
      for (const int id : {frmMsg::kLabelId, frmMsg::kImageId, 6, 7}) {
        RECT child{};
        GetWindowRect(GetDlgItem(box, id), &child);
        IntersectRect(&common, &child, &client);
        const bool inside = EqualRect(&common, &child) != 0;
        EXPECT_TRUE(inside || child.right == child.left)
            << "control " << id << " is cut off: " << child.left << ',' << child.top << ' ' << child.right
            << ',' << child.bottom << " of " << client.right << ',' << client.bottom << " for "
            << prompt.substr(0, 9);
      }
      PostMessageA(GetDlgItem(box, 6), BM_CLICK, 0, 0);
    });
  }
}

TEST_F(MessageBoxTest, TheOwnerTakesNoInputWhileTheBoxIsOpen) {
  struct WindowDestroyer {
    void operator()(HWND window) const { DestroyWindow(window); }
  };
  using Owned = std::unique_ptr<std::remove_pointer_t<HWND>, WindowDestroyer>;
  const auto make = [](DWORD exStyle, const char* title, HWND owner) {
    return Owned(CreateWindowExA(exStyle, "STATIC", title, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 300, 200,
                                 owner, nullptr, nullptr, nullptr));
  };
  const Owned owner = make(0, "owner", nullptr);
  ASSERT_TRUE(WaitUntil([&] { return GetActiveWindow() == owner.get(); }));
  const auto showOver = [&](HWND expected) {
    Show("Wait", 0, [&](HWND box) {
      EXPECT_EQ(GetWindow(box, GW_OWNER), expected);
      EXPECT_EQ(IsWindowEnabled(expected), 0);
      PressKey(VK_RETURN);
    });
    EXPECT_NE(IsWindowEnabled(expected), 0);
  };
  showOver(owner.get());

  // In the background no window is the active one; a palette or a tip that lies above is not what is asked
  // about.
  const Owned palette = make(WS_EX_TOOLWINDOW, "palette", owner.get());
  SetForegroundWindow(GetDesktopWindow());
  ASSERT_TRUE(WaitUntil([&] { return GetActiveWindow() == nullptr; }));
  showOver(owner.get());
}

}  // namespace
}  // namespace snip::test
