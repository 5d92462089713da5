#include "ui/dialogs/MessageBoxLayout.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/unit/Printing.h"

namespace snip::test {
namespace {

using Buttons = std::vector<MessageResult>;
constexpr auto kOk = MessageResult::Ok;
constexpr auto kCancel = MessageResult::Cancel;
constexpr auto kYes = MessageResult::Yes;
constexpr auto kNo = MessageResult::No;

TEST(MessageBoxStyleTest, ButtonsIconAndSoundFollowFromTheBits) {
  constexpr auto information = MessageIcon::Information;
  constexpr auto question = MessageIcon::Question;
  constexpr auto critical = MessageIcon::Critical;
  struct Case {
    int style;
    Buttons buttons;
    MessageIcon icon;
    int sound;
  };
  const std::vector<Case> cases = {
      {0, {kOk}, information, 14},
      {64, {kOk}, information, 14},
      {36, {kYes, kNo}, question, 18},
      {1, {kOk, kCancel}, information, 14},
      {4, {kYes, kNo}, information, 14},
      {16, {kOk}, critical, 17},
      {17, {kOk, kCancel}, critical, 17},
      {20, {kYes, kNo}, critical, 17},
      {32, {kOk}, question, 18},
      {48, {kOk}, question, 18},  // holds the bit 32
      {52, {kYes, kNo}, question, 18},
      {80, {kOk}, critical, 17},
      // Sets of buttons that do not exist fall to one that does.
      {2, {kOk}, information, 14},
      {3, {kOk, kCancel}, information, 14},
      {5, {kYes, kNo}, information, 14},
      // Bits that say nothing here.
      {64 + 256, {kOk}, information, 14},
      {36 + 256, {kYes, kNo}, question, 18},
      {8 + 4096, {kOk}, information, 14},
  };
  for (const auto& [number, buttons, icon, sound] : cases) {
    SCOPED_TRACE(number);
    const MessageBoxStyle style = MessageBoxStyleFromNumber(number);
    EXPECT_EQ(style.buttons, buttons);
    EXPECT_EQ(style.icon, icon);
    EXPECT_EQ(style.sound, sound);
  }
}

TEST(MessageBoxStyleTest, EscapePressesCancelOrALoneOk) {
  const auto escape = [](int style) {
    const MessageBoxStyle boxStyle = MessageBoxStyleFromNumber(style);
    const MessageResult* button = EscapeButton(boxStyle);
    return button != nullptr ? static_cast<int>(*button) : 0;
  };
  EXPECT_EQ(escape(0), 1);
  EXPECT_EQ(escape(1), 2);
  EXPECT_EQ(escape(36), 0);  // neither Yes nor No
}

TEST(MessageBoxStyleTest, ButtonsHaveTheirCaptions) {
  EXPECT_EQ(MessageButtonCaption(kOk), "OK");
  EXPECT_EQ(MessageButtonCaption(kCancel), "Cancel");
  EXPECT_EQ(MessageButtonCaption(kYes), "Yes");
  EXPECT_EQ(MessageButtonCaption(kNo), "No");
}

/// A prompt of so many characters in a font whose characters are all alike.
MessageBoxLayout LayOut(int style, int characters, Size dialogUnit, Size screen) {
  return LayOutMessageBox(
      MessageBoxStyleFromNumber(style),
      {.dialogUnit = dialogUnit,
       .icon = {32, 32},
       .screenWidth = screen.width,
       .screenHeight = screen.height,
       .measurePrompt = [=](int width) {
         const int perLine = std::max(width / dialogUnit.width, 1);
         const int lines = (characters + perLine - 1) / perLine;
         return Size{std::min(characters, perLine) * dialogUnit.width, lines * dialogUnit.height};
       }});
}

bool Overlap(const Rect& a, const Rect& b) {
  return a.left < b.right() && b.left < a.right() && a.top < b.bottom() && b.top < a.bottom();
}

TEST(MessageBoxLayoutTest, EverythingFitsWithoutTouching) {
  for (const Size screen : {Size{1920, 1040}, Size{640, 440}, Size{320, 240}}) {
    for (const Size dialogUnit : {Size{6, 13}, Size{8, 16}}) {
      for (const int characters : {0, 1, 20, 60, 61, 300, 2000, 100000}) {
        for (const int style : {0, 1, 36}) {
          SCOPED_TRACE(testing::Message()
                       << "style " << style << ", " << characters << " characters of "
                       << testing::PrintToString(dialogUnit) << " on " << testing::PrintToString(screen));
          const MessageBoxLayout box = LayOut(style, characters, dialogUnit, screen);
          EXPECT_LE(box.client.width, screen.width * 9 / 10);
          EXPECT_LT(box.client.height, screen.height);

          std::vector<Rect> parts = box.buttons;
          parts.insert(parts.end(), {box.icon, box.prompt});
          for (std::size_t i = 0; i < parts.size(); ++i) {
            EXPECT_GT(parts[i].left, 0);
            EXPECT_GT(parts[i].top, 0);
            EXPECT_GT(parts[i].width, 0);
            EXPECT_GT(parts[i].height, 0);
            EXPECT_LE(parts[i].right(), box.client.width);
            EXPECT_LT(parts[i].bottom(), box.client.height);
            for (std::size_t j = 0; j < i; ++j)
              EXPECT_FALSE(Overlap(parts[i], parts[j])) << i << " and " << j;
          }
          EXPECT_GT(box.prompt.left, box.icon.right());

          // The buttons: in a centred row, all alike, below everything else.
          ASSERT_EQ(box.buttons.size(), style == 0 ? 1U : 2U);
          const Rect& first = box.buttons.front();
          const Rect& last = box.buttons.back();
          EXPECT_LE(std::abs(first.left - (box.client.width - last.right())), 1);
          EXPECT_EQ(first.top, last.top);
          EXPECT_EQ(first.width, last.width);
          EXPECT_GT(first.top, std::max(box.icon.bottom(), box.prompt.bottom()));
        }
      }
    }
  }
}

TEST(MessageBoxLayoutTest, APromptIsShownWholeOrScrolls) {
  for (const int characters : {1, 60, 61, 500, 5000, 50000}) {
    SCOPED_TRACE(characters);
    const MessageBoxLayout box = LayOut(36, characters, {8, 16}, {800, 600});
    const int shown = (box.prompt.width / 8) * (box.prompt.height / 16);
    EXPECT_EQ(box.promptOverflows, shown < characters);
    EXPECT_EQ(box.promptOverflows, characters >= 5000);
  }
}

TEST(MessageBoxLayoutTest, AShortPromptStandsBesideTheMiddleOfTheIcon) {
  const MessageBoxLayout box = LayOut(64, 20, {8, 16}, {1920, 1040});
  EXPECT_EQ(box.prompt.height, 16);
  EXPECT_EQ(box.prompt.top - box.icon.top, 8);
  EXPECT_EQ(box.icon.bottom() - box.prompt.bottom(), 8);
}

}  // namespace
}  // namespace snip::test
