#include "ui/dialogs/frmFields.h"

#include <gtest/gtest.h>

#include "platform/Win32Text.h"
#include "tests/support/ModalWindow.h"

namespace snip::test {
namespace {

/// Whether all of a control is to be seen of which nothing covers the part of the dialog that it is in.
bool InSight(HWND control) {
  const Rect place = PlaceInParent(control);
  return place.top >= 0 && place.bottom() <= ClientSize(GetParent(control)).height;
}

TEST(FieldsDialogTest, OneDialogAsksForAllFieldsAndBringsEachIntoSight) {
  const TestOwner owner;
  CaptionPainter captions;
  const int firstId = frmFields::kFirstFieldId;
  for (const int count : {3, 25, 120}) {
    SCOPED_TRACE(count);
    const int asked = std::min(count, 100);
    std::vector<CodeField> fields(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
      fields[static_cast<std::size_t>(i)].name = "f" + std::to_string(i);
      if (i == asked - 1) fields[static_cast<std::size_t>(i)].choices = {"one", "two"};
    }
    std::optional<frmFields::Texts> texts;
    DriveModal(
        "Fill In Fields",
        [&] {
          texts = frmFields(captions, {}).ShowMe(owner.get(), fields, [&](const frmFields::Texts& entered) {
            return entered.at("f0") + entered.at("f" + std::to_string(asked - 1));
          });
        },
        [&](HWND dialog) {
          const auto preview = [&](const std::string& text) {
            return WaitUntil([&] { return WindowText(GetDlgItem(dialog, frmFields::kPreviewId)) == text; });
          };
          EXPECT_EQ(FindControl(dialog, firstId + asked), nullptr);
          TypeText("x");
          EXPECT_TRUE(preview("xone")) << "the first is selected";
          for (int i = 1; i < asked; ++i) {
            PressKey(VK_TAB);
            EXPECT_TRUE(WaitUntil([&] { return InSight(FindControl(dialog, firstId + i)); })) << i;
          }
          PressKey(VK_DOWN);
          EXPECT_TRUE(preview("xtwo"));
          const HWND first = FindControl(dialog, firstId);
          EXPECT_EQ(InSight(first), asked == 3);
          SendMessageA(GetParent(first), WM_VSCROLL, SB_TOP, 0);
          EXPECT_TRUE(InSight(first));
          PressKey(VK_RETURN);
        });
    ASSERT_TRUE(texts);
    EXPECT_EQ(texts->size(), fields.size());
    EXPECT_EQ(texts->at("f" + std::to_string(asked - 1)), "two");
  }
}

}  // namespace
}  // namespace snip::test
