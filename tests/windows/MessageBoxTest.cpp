#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "platform/Win32Text.h"
#include "platform/Window.h"
#include "resources/resource.h"
#include "tests/support/ModalWindow.h"
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

  /// Shows a box while `script` works on it; the script has to close it.
  MessageResult Show(const std::string& prompt, int style, const std::function<void(HWND)>& script,
                     const std::string& title = kTitle) {
    auto result = MessageResult::Ok;
    const auto show = [&] { result = ShowMessage(sounds_, prompt, style, title); };
    DriveModal(title.empty() ? "Brennic Snipstore 2.0" : title, show, script);
    return result;
  }
};

TEST_F(MessageBoxTest, StyleChoosesSignAndSound) {
  for (const char* event : {"SystemAsterisk", "SystemHand", "SystemQuestion"}) AssignSound(event);
  for (const auto& [style, icon, sound] : {std::tuple(0, IDI_MESSAGE_INFORMATION, "SystemAsterisk"),
                                           std::tuple(16, IDI_MESSAGE_CRITICAL, "SystemHand"),
                                           std::tuple(36, IDI_MESSAGE_QUESTION, "SystemQuestion")}) {
    SCOPED_TRACE(style);
    played_.clear();
    Show("A question", style, [wanted = SharedIcon(icon, SM_CXICON)](HWND box) {
      EXPECT_EQ(WindowText(GetDlgItem(box, frmMsg::kLabelId)), "A question");
      EXPECT_EQ(SendDlgItemMessageA(box, frmMsg::kImageId, STM_GETICON, 0, 0),
                reinterpret_cast<LRESULT>(wanted));
      PostMessageA(box, WM_CLOSE, 0, 0);
    });
    EXPECT_EQ(played_, std::vector<std::string>{sound});
  }
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
  EXPECT_EQ(Show("Untitled", 0, cases[0].act, ""), MessageResult::Ok);
}

TEST_F(MessageBoxTest, ALongPromptIsShownWholeInABoxThatFitsTheScreen) {
  std::string prompt;
  for (int i = 0; i < 500; ++i) prompt += "line " + std::to_string(i) + " && more\r\n";
  Show(prompt, 36, [&](HWND box) {
    const Rect screen{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    const auto isWithin = [](const Rect& inner, const Rect& outer) {
      return inner.left >= outer.left && inner.top >= outer.top && inner.right() <= outer.right() &&
             inner.bottom() <= outer.bottom();
    };
    EXPECT_TRUE(isWithin(PlaceInParent(box), screen));
    EXPECT_EQ(WindowText(GetDlgItem(box, frmMsg::kLabelId)), prompt);
    const Size client = ClientSize(box);
    for (const int id : {frmMsg::kLabelId, frmMsg::kImageId, 6, 7}) {
      EXPECT_TRUE(isWithin(PlaceInParent(GetDlgItem(box, id)), {0, 0, client.width, client.height})) << id;
    }
    PostMessageA(GetDlgItem(box, 6), BM_CLICK, 0, 0);
  });
}

TEST_F(MessageBoxTest, TheOwnerTakesNoInputWhileTheBoxIsOpen) {
  const TestOwner owner;
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
  ASSERT_NE(CreateWindowExA(WS_EX_TOOLWINDOW, "STATIC", "palette", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10,
                            300, 200, owner.get(), nullptr, nullptr, nullptr),
            nullptr);
  SetForegroundWindow(GetDesktopWindow());
  ASSERT_TRUE(WaitUntil([&] { return GetActiveWindow() == nullptr; }));
  showOver(owner.get());
}

}  // namespace
}  // namespace snip::test
