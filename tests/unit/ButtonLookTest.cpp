#include "ui/commandbar/ButtonLook.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/unit/TestBar.h"

namespace snip::test {
namespace {

constexpr ButtonLook kFlat{};
constexpr ButtonLook kRaised{.push = Edge::Raised, .arrow = Edge::Raised};
constexpr ButtonLook kDown{.shifted = true, .push = Edge::Sunken, .arrow = Edge::Sunken};
constexpr ButtonLook kToggledOn{
    .shifted = true, .push = Edge::Sunken, .arrow = Edge::Sunken, .lightened = true};

BarButton Button(ButtonType type, int state, bool enabled = true) {
  BarButton button;
  button.ButtonType = type;
  button.State = state;
  button.Enabled = enabled;
  return button;
}

TEST(ButtonLookTest, PaintGoesByTheStateAndRedrawByTheTypeToo) {
  struct Case {
    ButtonType type;
    int state;
    ButtonLook paint, redraw;
  };
  for (const auto& [type, state, paint, redraw] : std::vector<Case>{
           {ButtonType::Push, 0, kFlat, kFlat},
           {ButtonType::Push, 1, kDown, kFlat},
           {ButtonType::Push, 2, kFlat, kFlat},
           {ButtonType::Menu, 0, kFlat, kFlat},
           {ButtonType::Menu, 1, kDown, kFlat},
           {ButtonType::Toggle, 0, kFlat, kFlat},
           {ButtonType::Toggle, 1, kToggledOn, kToggledOn},
           {ButtonType::Toggle, 2, kFlat, kFlat},
           {ButtonType::Toggle, -1, kFlat, kFlat},
           {ButtonType::DropDown, 0, kFlat, kFlat},
           {ButtonType::DropDown, 1, kDown, kFlat},
           {ButtonType::DropDown, 2, kFlat, kFlat},
           {ButtonType::Separator, 0, kFlat, kFlat},
           {ButtonType::Separator, 1, kDown, kFlat},
       }) {
    for (const bool enabled : {true, false}) {
      SCOPED_TRACE(testing::Message() << "type " << static_cast<int>(type) << ", state " << state);
      EXPECT_EQ(PaintLook(Button(type, state, enabled)), paint);
      EXPECT_EQ(RedrawLook(Button(type, state, enabled)), redraw);
    }
  }
}

TEST(ButtonLookTest, AWholePaintShowsButtonsInRunModeOnly) {
  const std::vector<BarButton> buttons = {Button(ButtonType::Push, 0), Button(ButtonType::Push, 1),
                                          Button(ButtonType::Toggle, 1)};
  EXPECT_EQ(PaintLooks(buttons, true), (std::vector<ButtonLook>{kFlat, kDown, kToggledOn}));
  EXPECT_TRUE(PaintLooks(buttons, false).empty());
  EXPECT_TRUE(PaintLooks({}, true).empty());
}

TEST(ButtonLookTest, TheButtonUnderTheMouseIsRaisedInBothParts) {
  EXPECT_EQ(RaisedLook(), kRaised);
}

TEST(ButtonLookTest, APressSinksThePartThatItIsOn) {
  struct Case {
    ButtonType type;
    int state;
    ButtonPart part;
    bool hot;
    ButtonLook look;
  };
  constexpr auto push = ButtonPart::Push;
  constexpr auto arrow = ButtonPart::Arrow;
  for (const auto& [type, state, part, hot, look] : std::vector<Case>{
           {ButtonType::Push, 0, push, true, {true, Edge::Sunken, Edge::Raised, false}},
           {ButtonType::Push, 0, push, false, {true, Edge::Sunken, Edge::Flat, false}},
           {ButtonType::Push, 1, push, false, {true, Edge::Sunken, Edge::Flat, false}},
           {ButtonType::Menu, 0, push, true, {true, Edge::Sunken, Edge::Raised, false}},
           {ButtonType::DropDown, 0, push, true, {true, Edge::Sunken, Edge::Raised, false}},
           {ButtonType::DropDown, 0, push, false, {true, Edge::Sunken, Edge::Flat, false}},
           {ButtonType::DropDown, 2, arrow, true, {false, Edge::Raised, Edge::Sunken, false}},
           {ButtonType::DropDown, 2, arrow, false, {false, Edge::Flat, Edge::Sunken, false}},
           {ButtonType::Toggle, 0, push, true, {true, Edge::Sunken, Edge::Raised, false}},
           {ButtonType::Toggle, 1, push, true, {true, Edge::Sunken, Edge::Raised, true}},
       }) {
    SCOPED_TRACE(testing::Message() << "type " << static_cast<int>(type) << ", state " << state << ", part "
                                    << static_cast<int>(part) << (hot ? ", hot" : ""));
    EXPECT_EQ(PressedLook(Button(type, state), part, hot), look);
  }
}

TEST(ButtonLookTest, EachChannelIsLightenedByAFifthUpToWhite) {
  EXPECT_EQ(Lightened(0x000000), 0x000000U);
  EXPECT_EQ(Lightened(0xC0C0C0), 0xE6E6E6U);  // 192 becomes 230.4
  EXPECT_EQ(Lightened(0xD4D4D4), 0xFEFEFEU);  // 212 becomes 254.4
  EXPECT_EQ(Lightened(0xD5D5D5), 0xFFFFFFU);  // 213 becomes 255.6
  EXPECT_EQ(Lightened(0xFFFFFF), 0xFFFFFFU);
  EXPECT_EQ(Lightened(0x030201), 0x040201U);  // 3.6, 2.4 and 1.2
  EXPECT_EQ(Lightened(0xFF8040), 0xFF9A4DU);  // each on its own: 255, 153.6 and 76.8
}

}  // namespace
}  // namespace snip::test
