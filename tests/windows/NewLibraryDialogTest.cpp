#include "ui/dialogs/frmNew.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/Win32Text.h"
#include "tests/support/ModalWindow.h"

namespace snip::test {
namespace {

TEST(NewLibraryDialogTest, TheNameEnteredIsReturned) {
  const TestOwner owner;
  CaptionPainter captions;
  struct Case {
    const char* name;
    std::string before;
    std::function<void(HWND)> act;
    std::string after;
  };
  const auto textIs = [](HWND dialog, const std::string& text) {
    return WaitUntil([&] { return WindowText(GetDlgItem(dialog, frmNew::kNameId)) == text; });
  };
  const auto typed = [&](HWND dialog) {
    TypeText("A b.c");
    EXPECT_TRUE(textIs(dialog, "A b.c")) << "what was there is not replaced";
  };
  const std::vector<Case> cases = {
      {"typed, Enter", "", [&](HWND dialog) { typed(dialog), PressKey(VK_RETURN); }, "A b.c"},
      {"typed over, Enter", "before", [&](HWND dialog) { typed(dialog), PressKey(VK_RETURN); }, "A b.c"},
      {"Enter at once", "before", [](HWND) { PressKey(VK_RETURN); }, "before"},
      {"Escape", "before", [&](HWND dialog) { typed(dialog), PressKey(VK_ESCAPE); }, ""},
      {"Tab to Cancel", "before", [](HWND) { PressKey(VK_TAB), PressKey(VK_TAB), PressKey(VK_SPACE); }, ""},
      {"Tab to OK", "before", [](HWND) { PressKey(VK_TAB), PressKey(VK_SPACE); }, "before"},
      {"closed", "before", [](HWND dialog) { PostMessageA(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); }, ""},
      {"OK clicked", "before", [](HWND dialog) { ClickCentre(GetDlgItem(dialog, IDOK)); }, "before"},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.name);
    std::string result;
    DriveModal(
        "New Code Library", [&] { result = frmNew(captions).ShowMe(owner.get(), expected.before); },
        [&](HWND dialog) {
          EXPECT_EQ(IsWindowEnabled(owner.get()), 0);
          expected.act(dialog);
        });
    EXPECT_EQ(result, expected.after);
    EXPECT_NE(IsWindowEnabled(owner.get()), 0);
  }
}

}  // namespace
}  // namespace snip::test
