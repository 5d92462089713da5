#include "ui/dialogs/frmFields.h"

#include <gtest/gtest.h>

#include "platform/Win32Text.h"
#include "tests/support/ModalWindow.h"

namespace snip::test {
namespace {

/// Whether a control is within the part of the dialog that it is in.
bool InSight(HWND control) {
  const Rect place = PlaceInParent(control);
  return place.top >= 0 && place.bottom() <= ClientSize(GetParent(control)).height;
}

TEST(FieldsDialogTest, OneDialogAsksForAllFieldsAndBringsEachIntoSight) {
  const TestOwner owner;
  CaptionPainter captions;
  for (const int count : {3, 25, 120}) {
    SCOPED_TRACE(count);
    const int last = std::min(count, 100) - 1;
    std::vector<CodeField> fields;
    for (int i = 0; i < count; ++i) fields.emplace_back().name = std::to_string(i);
    fields[static_cast<std::size_t>(last)].choices = {"one", "two"};
    std::optional<frmFields::Texts> texts;
    const auto ends = [&](const frmFields::Texts& t) { return t.at("0") + " " + t.at(std::to_string(last)); };
    DriveModal(
        "Fill In Fields", [&] { texts = frmFields(captions, {}).ShowMe(owner.get(), fields, ends); },
        [&](HWND dialog) {
          const auto field = [&](int i) { return FindControl(dialog, frmFields::kFirstFieldId + i); };
          const auto previewIs = [&](const std::string& text) {
            return WaitUntil([&] { return WindowText(GetDlgItem(dialog, frmFields::kPreviewId)) == text; });
          };
          EXPECT_EQ(field(last + 1), nullptr);
          TypeText("x");
          EXPECT_TRUE(previewIs("x one")) << "what was there is not replaced";
          for (int i = 1; i <= last; ++i) {
            PressKey(VK_TAB);
            EXPECT_TRUE(WaitUntil([&] { return InSight(field(i)); })) << i;
          }
          PressKey(VK_DOWN);
          EXPECT_TRUE(previewIs("x two"));
          EXPECT_EQ(InSight(field(0)), count == 3);
          SendMessageA(GetParent(field(0)), WM_VSCROLL, SB_TOP, 0);
          EXPECT_TRUE(InSight(field(0)));
          PressKey(VK_RETURN);
        });
    EXPECT_EQ(texts ? ends(*texts) : "", "x two");
  }
}

}  // namespace
}  // namespace snip::test
