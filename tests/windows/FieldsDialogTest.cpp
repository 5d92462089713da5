#include "ui/dialogs/frmFields.h"

#include <gtest/gtest.h>

#include "platform/Dialog.h"
#include "platform/Win32Text.h"
#include "tests/support/ModalWindow.h"

namespace snip::test {
namespace {

/// Whether a control is within the part of the dialog that it is in.
bool InSight(HWND control) {
  const Rect place = PlaceInParent(control);
  return place.top >= 0 && place.bottom() <= ClientSize(GetParent(control)).height;
}

/// Lets messages, and with them the dialog, have a font of that height; answers with the one before.
LONG SetMessageFontHeight(LONG height) {
  NONCLIENTMETRICSA metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  std::swap(height, metrics.lfMessageFont.lfHeight);
  SystemParametersInfoA(SPI_SETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  return height;
}

TEST(FieldsDialogTest, OneDialogAsksForAllFieldsAndBringsEachIntoSight) {
  const TestOwner owner;
  CaptionPainter captions;
  for (const int count : {3, 25, 120}) {
    SCOPED_TRACE(count);
    const LONG usual = SetMessageFontHeight(count == 25 ? -24 : -11);  // as on a screen of 200 dpi
    const int last = std::min(count, 100) - 1;
    std::vector<CodeField> fields;
    for (int i = 0; i < count; ++i) fields.emplace_back().name = std::to_string(i);
    fields[static_cast<std::size_t>(last)].choices = {"one", "two"};
    std::optional<FieldTexts> texts;
    std::string gap;  // so high that not both ends are in sight
    for (int i = 0; i < 40; ++i) gap += "\r\n";
    const auto ends = [&](const FieldTexts& t) { return t.at("0") + gap + t.at(std::to_string(last)); };
    DriveModal(
        "Fill In Fields", [&] { texts = frmFields(captions, {}).ShowMe(owner.get(), fields, ends); },
        [&](HWND dialog) {
          const auto field = [&](int i) { return FindControl(dialog, frmFields::kFirstFieldId + i); };
          const HWND preview = GetDlgItem(dialog, frmFields::kPreviewId);
          const auto previewIs = [&](const std::string& text, bool fromTheTop) {
            return WaitUntil([&] {
              const bool atTop = SendMessageA(preview, EM_GETFIRSTVISIBLELINE, 0, 0) == 0;
              return WindowText(preview) == text && atTop == fromTheTop;
            });
          };
          EXPECT_EQ(field(last + 1), nullptr);
          EXPECT_LE(PlaceInParent(dialog).bottom(), WorkArea(dialog).bottom());
          TypeText("x");
          EXPECT_TRUE(previewIs("x" + gap + "one", true)) << "what was there is not replaced";
          for (int i = 1; i <= last; ++i) {
            PressKey(VK_TAB);
            EXPECT_TRUE(WaitUntil([&] { return InSight(field(i)); })) << i;
          }
          PressKey(VK_DOWN);
          EXPECT_TRUE(previewIs("x" + gap + "two", false)) << "what has changed is not in sight";
          EXPECT_EQ(InSight(field(0)), count == 3);
          SendMessageA(GetParent(field(0)), WM_VSCROLL, SB_TOP, 0);
          EXPECT_TRUE(InSight(field(0)));
          PressKey(VK_RETURN);
        });
    SetMessageFontHeight(usual);
    EXPECT_EQ(texts ? ends(*texts) : "", "x" + gap + "two");
  }
}

}  // namespace
}  // namespace snip::test
