#include "ui/commandbar/CommandBarInput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/TestBar.h"

namespace snip::test {
namespace {

using Strings = std::vector<std::string>;

constexpr auto kPush = ButtonType::Push;
constexpr auto kMenu = ButtonType::Menu;
constexpr auto kToggle = ButtonType::Toggle;
constexpr auto kDropDown = ButtonType::DropDown;
constexpr auto kSeparator = ButtonType::Separator;

/// For std::visit.
template <typename... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

std::string Said(Edge edge) {
  return edge == Edge::Flat ? "flat" : edge == Edge::Raised ? "raised" : "sunken";
}

/// "raised" for both parts, "sunken|raised" for push and arrow part; "shifted" and "light" as they are.
std::string Said(const ButtonLook& look) {
  std::string said = Said(look.push);
  if (look.arrow != look.push) said += "|" + Said(look.arrow);
  if (look.shifted) said += " shifted";
  if (look.lightened) said += " light";
  return said;
}

std::string Said(BarButtonEvent event) {
  switch (event) {
    case BarButtonEvent::ButtonClicked:
      return "ButtonClicked";
    case BarButtonEvent::Dropdown:
      return "Dropdown";
    case BarButtonEvent::MouseHover:
      return "MouseHover";
    case BarButtonEvent::MouseLeave:
      return "MouseLeave";
  }
  return "?";
}

std::string Said(BarMouseEvent event) {
  switch (event) {
    case BarMouseEvent::MouseDown:
      return "MouseDown";
    case BarMouseEvent::MouseMove:
      return "MouseMove";
    case BarMouseEvent::MouseUp:
      return "MouseUp";
  }
  return "?";
}

std::string Said(const BarEffect::Any& effect) {
  return std::visit(
      Overloaded{
          [](const BarEffect::PaintButton& e) {
            return "paint " + std::to_string(e.button) + " " + Said(e.look);
          },
          [](const BarEffect::PaintBar&) -> std::string { return "paint bar"; },
          [](const BarEffect::RaiseMouse& e) {
            return Said(e.event) + " " + std::to_string(e.mouse.Button) + " " +
                   std::to_string(e.mouse.Shift) + " " + std::to_string(e.mouse.at.x) + "," +
                   std::to_string(e.mouse.at.y);
          },
          [](const BarEffect::RaiseButton& e) { return Said(e.event) + " " + std::to_string(e.button); },
          [](const BarEffect::RaiseDblClick&) -> std::string { return "DblClick"; },
          [](const BarEffect::PlayClick&) -> std::string { return "click sound"; },
          [](const BarEffect::ShowTip& e) {
            return "tip \"" + e.text + "\" at " + std::to_string(e.screen.x) + "," +
                   std::to_string(e.screen.y);
          },
          [](const BarEffect::HideTip&) -> std::string { return "hide tip"; },
          [](const BarEffect::TakeCapture&) -> std::string { return "take capture"; },
          [](const BarEffect::ReleaseCapture&) -> std::string { return "release capture"; },
          [](const BarEffect::StartHoverTimer&) -> std::string { return "start timer"; },
          [](const BarEffect::StopHoverTimer&) -> std::string { return "stop timer"; },
      },
      effect);
}

/// A bar without a window: applies what comes out of the input by writing it down.
class TestBar {
 public:
  explicit TestBar(const std::vector<ButtonType>& types) : buttons(BarOf(types)) { input.Show(true); }

  /// Applies a reaction to its end.
  void Run(BarReaction reaction) {
    for (;;) {
      for (const BarEffect::Any& effect : reaction.effects) {
        log_.push_back(Said(effect));
        if (log_.back() == actsOn_) std::exchange(act_, [] {})();
      }
      if (!reaction.then) return;
      reaction = reaction.then();
    }
  }

  /// What was applied since the last call.
  Strings Log() { return std::exchange(log_, {}); }

  Strings Tick(int x, int y = 10) {
    Run(input.tHitTest_Timer(Point{x, y}, Point{x + 1000, y + 500}));
    return Log();
  }
  Strings TickElsewhere() {
    Run(input.tHitTest_Timer(std::nullopt, Point{5, 5}));
    return Log();
  }
  Strings Down(int x, std::int16_t button = 1) {
    Run(input.MouseDown({button, 0, {x, 10}}));
    return Log();
  }
  Strings Move(int x, std::int16_t held = 1) {
    Run(input.MouseMove({held, 0, {x, 10}}));
    return Log();
  }
  Strings Up(int x, std::int16_t button = 1) {
    Run(input.MouseUp({button, 0, {x, 10}}));
    return Log();
  }
  Strings Do(BarReaction reaction) {
    Run(std::move(reaction));
    return Log();
  }
  /// The mouse comes onto a place and rests there.
  void Hover(int x) {
    Tick(x);
    Log();
  }

  /// What the container does when it first sees an effect.
  void On(const std::string& effect, std::function<void()> act) {
    actsOn_ = effect;
    act_ = std::move(act);
  }

  CommandBarButtons buttons;
  CommandBarProperties properties;
  CommandBarInput input{buttons, properties};

 private:
  Strings log_;
  std::string actsOn_;
  std::function<void()> act_;
};

// Where buttons of a bar of picture buttons are, as long as none before is a separator or drop-down button.
constexpr int kFirst = 10;
constexpr int kSecond = 30;
constexpr int kThird = 55;
constexpr int kBeside = 500;
/// The arrow part of a drop-down button in the first place, which ends at 32.
constexpr int kArrow = 28;

// ---------------------------------------------------------------------------------------------------------
// Hovering

TEST(CommandBarHoverTest, AButtonUnderTheMouseIsRaisedAndFlatAgainBehindIt) {
  TestBar bar({kPush, kPush});
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"paint 0 raised", "MouseHover 0"}));
  EXPECT_EQ(bar.input.HotButton(), 0);
  EXPECT_EQ(bar.Tick(kFirst + 1), Strings{});
  EXPECT_EQ(bar.Tick(kBeside), (Strings{"paint 0 flat", "MouseLeave 0"}));
  EXPECT_EQ(bar.input.HotButton(), -1);
  EXPECT_EQ(bar.Tick(kBeside), Strings{});
}

TEST(CommandBarHoverTest, FromOneButtonToTheNextTheFirstIsLeftFirst) {
  TestBar bar({kPush, kPush});
  bar.Hover(kFirst);
  EXPECT_EQ(bar.Tick(kSecond), (Strings{"paint 0 flat", "MouseLeave 0", "paint 1 raised", "MouseHover 1"}));
  EXPECT_EQ(bar.input.HotButton(), 1);
}

TEST(CommandBarHoverTest, AnotherWindowUnderTheMouseLeavesTheButton) {
  TestBar bar({kPush});
  bar.Hover(kFirst);
  EXPECT_EQ(bar.TickElsewhere(), (Strings{"paint 0 flat", "MouseLeave 0"}));
  EXPECT_EQ(bar.TickElsewhere(), Strings{});
}

TEST(CommandBarHoverTest, ADisabledButtonIsNeitherRaisedNorReportedButLeft) {
  TestBar bar({kPush, kPush});
  bar.buttons.SetGrayed(0, true);
  EXPECT_EQ(bar.Tick(kFirst), Strings{});
  EXPECT_EQ(bar.input.HotButton(), 0);
  EXPECT_EQ(bar.Tick(kSecond), (Strings{"paint 0 flat", "MouseLeave 0", "paint 1 raised", "MouseHover 1"}));
}

TEST(CommandBarHoverTest, AButtonGrayedUnderTheMouseIsLeftAsAnyOther) {
  TestBar bar({kPush});
  bar.Hover(kFirst);
  bar.buttons.SetGrayed(0, true);
  EXPECT_EQ(bar.Tick(kFirst), Strings{});
  EXPECT_EQ(bar.Tick(kBeside), (Strings{"paint 0 flat", "MouseLeave 0"}));
}

TEST(CommandBarHoverTest, SeparatorsAreNothing) {
  TestBar bar({kSeparator, kPush});
  EXPECT_EQ(bar.Tick(5), Strings{});
  EXPECT_EQ(bar.input.HotButton(), -1);
  bar.Hover(kFirst);
  EXPECT_EQ(bar.Tick(5), (Strings{"paint 1 flat", "MouseLeave 1"}));
}

TEST(CommandBarHoverTest, AToggleButtonThatIsOnStaysSunken) {
  TestBar bar({kToggle});
  bar.buttons.SetState(0, 1);
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"paint 0 sunken shifted light", "MouseHover 0"}));
  EXPECT_EQ(bar.Tick(kBeside), (Strings{"MouseLeave 0"}));
  bar.buttons.SetState(0, 0);
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"paint 0 raised", "MouseHover 0"}));
  EXPECT_EQ(bar.Tick(kBeside), (Strings{"paint 0 flat", "MouseLeave 0"}));
}

TEST(CommandBarHoverTest, OnlyAToggleButtonIsOn) {
  for (const auto type : {kPush, kMenu, kDropDown}) {
    TestBar bar({type});
    bar.buttons.SetState(0, 1);
    EXPECT_EQ(bar.Tick(kFirst), (Strings{"paint 0 raised", "MouseHover 0"}));
    EXPECT_EQ(bar.Tick(kBeside), (Strings{"paint 0 flat", "MouseLeave 0"}));
  }
}

TEST(CommandBarHoverTest, TheTickKeepsThePartOfADropDownButtonThatTheMouseIsOn) {
  TestBar bar({kDropDown});
  EXPECT_EQ(bar.Tick(kArrow), (Strings{"paint 0 raised", "MouseHover 0"}));
  EXPECT_EQ(bar.buttons.State(0), 2);
  EXPECT_EQ(bar.Tick(kFirst), Strings{});
  EXPECT_EQ(bar.buttons.State(0), 0);
}

TEST(CommandBarHoverTest, TheEighthTickOnAPictureButtonShowsItsCaptionOnce) {
  TestBar bar({kPush, kPush});
  bar.buttons.SetCaption(0, "&New && more", Metrics());
  bar.Hover(kFirst);
  for (int i = 1; i < 8; ++i) EXPECT_EQ(bar.Tick(kFirst), Strings{}) << i;
  EXPECT_EQ(bar.Tick(kFirst + 2, 12), (Strings{"tip \"&New && more\" at 1012,512"}));
  for (int i = 0; i < 70000; ++i) ASSERT_EQ(bar.Tick(kFirst), Strings{}) << i;

  EXPECT_EQ(bar.Tick(kSecond),
            (Strings{"hide tip", "paint 0 flat", "MouseLeave 0", "paint 1 raised", "MouseHover 1"}));
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"paint 1 flat", "MouseLeave 1", "paint 0 raised", "MouseHover 0"}));
  for (int i = 1; i < 8; ++i) EXPECT_EQ(bar.Tick(kFirst), Strings{}) << i;
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"tip \"&New && more\" at 1010,510"}));
  EXPECT_EQ(bar.TickElsewhere(), (Strings{"hide tip", "paint 0 flat", "MouseLeave 0"}));
  EXPECT_EQ(bar.TickElsewhere(), Strings{});
}

TEST(CommandBarHoverTest, AShortVisitDoesNotCountForTheNext) {
  TestBar bar({kPush, kPush});
  for (int visit = 0; visit < 4; ++visit) {
    bar.Hover(visit % 2 == 0 ? kFirst : kSecond);
    for (int i = 1; i < 8; ++i) EXPECT_EQ(bar.Tick(visit % 2 == 0 ? kFirst : kSecond), Strings{});
  }
}

TEST(CommandBarHoverTest, ADisabledPictureButtonHasItsTipToo) {
  TestBar bar({kPush});
  bar.buttons.SetCaption(0, "Save", Metrics());
  bar.buttons.SetGrayed(0, true);
  bar.Hover(kFirst);
  for (int i = 1; i < 8; ++i) bar.Tick(kFirst);
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"tip \"Save\" at 1010,510"}));
}

TEST(CommandBarHoverTest, AButtonThatShowsItsCaptionHasNoTip) {
  for (const auto display : {DisplayType::Caption, DisplayType::PictureAndCaption, DisplayType{5}}) {
    TestBar bar({});
    bar.buttons.Add({.Caption = "Save", .DisplayType = display}, Metrics());
    bar.Hover(kFirst);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(bar.Tick(kFirst), Strings{});
  }
}

TEST(CommandBarHoverTest, RestingBesideAllButtonsShowsNoTip) {
  TestBar bar({kPush});
  for (int i = 0; i < 100; ++i) EXPECT_EQ(bar.Tick(kBeside), Strings{});
}

TEST(CommandBarHoverTest, APressHidesTheTip) {
  TestBar bar({kPush});
  bar.Hover(kFirst);
  for (int i = 0; i < 8; ++i) bar.Tick(kFirst);
  EXPECT_EQ(bar.Down(kFirst), (Strings{"take capture", "MouseDown 1 0 10,10", "hide tip",
                                       "paint 0 sunken|raised shifted", "click sound"}));
  bar.Up(kFirst);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(bar.Tick(kFirst), Strings{});  // it was the same visit
}

TEST(CommandBarHoverTest, ARemovedHotButtonIsNotReported) {
  TestBar bar({kPush, kPush});
  bar.Hover(kFirst);
  for (int i = 0; i < 8; ++i) bar.Tick(kFirst);
  bar.buttons.Remove(0, Metrics());
  EXPECT_EQ(bar.input.HotButton(), -1);
  // The other one took its place.
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"hide tip", "paint 0 raised", "MouseHover 0"}));
  for (int i = 1; i < 8; ++i) bar.Tick(kFirst);
  bar.Tick(kFirst);
  bar.buttons.Remove(0, Metrics());
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"hide tip"}));
  EXPECT_EQ(bar.Tick(kFirst), Strings{});
}

TEST(CommandBarHoverTest, AMovedHotButtonIsLeftAtItsNewPlace) {
  TestBar bar({kPush, kPush, kPush});
  bar.Hover(kFirst);
  bar.buttons.Move(0, 2, Metrics());
  EXPECT_EQ(bar.input.HotButton(), 2);
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"paint 2 flat", "MouseLeave 2", "paint 0 raised", "MouseHover 0"}));
}

TEST(CommandBarHoverTest, WhatTheContainerDoesInMouseLeaveCounts) {
  const auto tick = [](const std::function<void(TestBar&)>& act) {
    TestBar bar({kPush, kPush, kPush});
    bar.Hover(kFirst);
    bar.On("MouseLeave 0", [&] { act(bar); });
    return bar.Tick(kSecond);
  };
  const Strings left = {"paint 0 flat", "MouseLeave 0"};
  EXPECT_EQ(tick([](TestBar& bar) { bar.buttons.SetGrayed(1, true); }), left);
  EXPECT_EQ(tick([](TestBar& bar) { bar.buttons.Remove(1, Metrics()); }), left);
  EXPECT_EQ(tick([](TestBar& bar) { bar.input.Freeze(); }), left);
  EXPECT_EQ(tick([](TestBar& bar) { bar.input.Show(false); }), left);
  EXPECT_EQ(tick([](TestBar& bar) { bar.buttons.Remove(0, Metrics()); }),
            (Strings{"paint 0 flat", "MouseLeave 0", "paint 0 raised", "MouseHover 0"}));
  // Another tick in a message box, and a press on nothing.
  EXPECT_EQ(tick([](TestBar& bar) {
              bar.Run(bar.input.tHitTest_Timer(Point{kThird, 10}, {}));
            }),
            (Strings{"paint 0 flat", "MouseLeave 0", "paint 2 raised", "MouseHover 2"}));
  EXPECT_EQ(tick([](TestBar& bar) {
              bar.Run(bar.input.MouseDown({1, 0, {kBeside, 10}}));
            }),
            (Strings{"paint 0 flat", "MouseLeave 0", "take capture", "MouseDown 1 0 500,10"}));
}

TEST(CommandBarHoverTest, ATickInMouseHoverDoesNotReportTheSameButtonAgain) {
  TestBar bar({kPush, kPush});
  bar.On("MouseHover 0", [&] {
    bar.Run(bar.input.tHitTest_Timer(Point{kFirst, 10}, {}));
    bar.Run(bar.input.tHitTest_Timer(Point{kSecond, 10}, {}));
  });
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"paint 0 raised", "MouseHover 0", "paint 0 flat", "MouseLeave 0",
                                       "paint 1 raised", "MouseHover 1"}));
  EXPECT_EQ(bar.input.HotButton(), 1);
}

// ---------------------------------------------------------------------------------------------------------
// Run mode and design time, freezing

TEST(CommandBarModeTest, TheHoverTimerRunsInRunMode) {
  TestBar bar({kPush});
  EXPECT_EQ(bar.Do(bar.input.Show(true)), (Strings{"start timer"}));
  EXPECT_TRUE(bar.input.InRunMode());
  EXPECT_EQ(bar.Do(bar.input.Show(false)), (Strings{"stop timer"}));
  EXPECT_FALSE(bar.input.InRunMode());
}

TEST(CommandBarModeTest, AtDesignTimeOnlyTheMouseIsReported) {
  for (const bool shown : {true, false}) {
    CommandBarButtons buttons = BarOf({kPush, kMenu, kDropDown});
    buttons.Add({.Caption = "&Save"}, Metrics());
    const CommandBarProperties properties;
    CommandBarInput input(buttons, properties);  // not shown yet, or shown at design time
    if (shown) input.Show(false);

    const auto effects = [](const BarReaction& reaction) {
      EXPECT_EQ(reaction.then, nullptr);
      Strings said;
      for (const auto& effect : reaction.effects) said.push_back(Said(effect));
      return said;
    };
    EXPECT_EQ(effects(input.tHitTest_Timer(Point{70, 10}, {})), Strings{});
    EXPECT_EQ(buttons.State(2), 0);  // nothing was hit
    EXPECT_EQ(effects(input.MouseDown({1, 3, {kSecond, 10}})), (Strings{"MouseDown 1 3 30,10"}));
    EXPECT_EQ(effects(input.MouseMove({1, 3, {kFirst, 10}})), (Strings{"MouseMove 1 3 10,10"}));
    EXPECT_EQ(effects(input.MouseUp({1, 3, {kFirst, 10}})), (Strings{"MouseUp 1 3 10,10"}));
    EXPECT_EQ(effects(input.DblClick()), (Strings{"DblClick"}));
    EXPECT_EQ(effects(input.AccessKeyPress('s')), Strings{});
    EXPECT_EQ(effects(input.DoDefaultAction(0)), Strings{});
    EXPECT_EQ(input.HotButton(), -1);
    EXPECT_EQ(input.PressedButton(), -1);
  }
}

TEST(CommandBarModeTest, BeingShownAtDesignTimeEndsAllThatGoesOn) {
  TestBar bar({kPush});
  bar.buttons.SetCaption(0, "x", Metrics());
  bar.Down(kFirst);
  bar.Hover(kFirst);
  for (int i = 0; i < 8; ++i) bar.Tick(kFirst);
  EXPECT_EQ(bar.Do(bar.input.Show(false)), (Strings{"hide tip", "release capture", "stop timer"}));
  EXPECT_EQ(bar.input.HotButton(), -1);
  EXPECT_EQ(bar.input.PressedButton(), -1);
}

TEST(CommandBarFreezeTest, AFrozenBarDoesNotFollowTheMouse) {
  TestBar bar({kPush, kDropDown});
  bar.Hover(kFirst);
  EXPECT_EQ(bar.Do(bar.input.Freeze()), Strings{});
  EXPECT_TRUE(bar.input.Frozen());
  for (int i = 0; i < 20; ++i) EXPECT_EQ(bar.Tick(50), Strings{});
  EXPECT_EQ(bar.input.HotButton(), 0);
  EXPECT_EQ(bar.buttons.State(1), 0);  // not even the part under the mouse is looked up

  EXPECT_EQ(bar.Do(bar.input.Thaw()), (Strings{"paint bar"}));
  EXPECT_FALSE(bar.input.Frozen());
  EXPECT_EQ(bar.Tick(50), (Strings{"paint 0 flat", "MouseLeave 0", "paint 1 raised", "MouseHover 1"}));
  EXPECT_EQ(bar.buttons.State(1), 2);
}

TEST(CommandBarFreezeTest, FreezingHidesTheTip) {
  TestBar bar({kPush});
  bar.Hover(kFirst);
  for (int i = 0; i < 8; ++i) bar.Tick(kFirst);
  EXPECT_EQ(bar.Do(bar.input.Freeze()), (Strings{"hide tip"}));
  EXPECT_EQ(bar.Do(bar.input.Freeze()), Strings{});
}

TEST(CommandBarFreezeTest, ThawingPaintsTheBarEvenWhenItWasNotFrozen) {
  TestBar bar({kPush});
  EXPECT_EQ(bar.Do(bar.input.Thaw()), (Strings{"paint bar"}));
}

TEST(CommandBarFreezeTest, APressGoesOnInAFrozenBar) {
  TestBar bar({kPush, kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  bar.input.Freeze();
  EXPECT_EQ(bar.Up(kFirst),
            (Strings{"release capture", "paint 0 raised", "ButtonClicked 0", "MouseUp 1 0 10,10"}));

  bar.Down(kFirst);
  EXPECT_EQ(bar.Up(kBeside), (Strings{"release capture", "MouseUp 1 0 500,10"}));  // painted when it thaws
  bar.Down(kFirst);
  EXPECT_EQ(bar.Do(bar.input.CaptureLost()), Strings{});
}

// ---------------------------------------------------------------------------------------------------------
// Pressing and releasing

TEST(CommandBarPressTest, APushButtonSinksSoundsAndIsClickedOnTheRelease) {
  TestBar bar({kPush, kPush});
  bar.Hover(kSecond);
  EXPECT_EQ(bar.Down(kSecond),
            (Strings{"take capture", "MouseDown 1 0 30,10", "paint 1 sunken|raised shifted", "click sound"}));
  EXPECT_EQ(bar.input.PressedButton(), 1);
  EXPECT_EQ(bar.Up(kSecond),
            (Strings{"release capture", "paint 1 raised", "ButtonClicked 1", "MouseUp 1 0 30,10"}));
  EXPECT_EQ(bar.input.PressedButton(), -1);
  EXPECT_EQ(bar.Tick(kSecond), Strings{});
  EXPECT_EQ(bar.Tick(kBeside), (Strings{"paint 1 flat", "MouseLeave 1"}));
}

TEST(CommandBarPressTest, MouseEventsHaveTheirArguments) {
  TestBar bar({});
  EXPECT_EQ(bar.Do(bar.input.MouseDown({2, 7, {-5, 60}})), (Strings{"take capture", "MouseDown 2 7 -5,60"}));
  EXPECT_EQ(bar.Do(bar.input.MouseMove({6, 1, {1, 2}})), (Strings{"MouseMove 6 1 1,2"}));
  EXPECT_EQ(bar.Do(bar.input.MouseUp({4, 2, {3, 4}})), (Strings{"release capture", "MouseUp 4 2 3,4"}));
}

TEST(CommandBarPressTest, EveryMouseButtonPresses) {
  for (const std::int16_t button : {std::int16_t{1}, std::int16_t{2}, std::int16_t{4}}) {
    TestBar bar({kPush});
    bar.Hover(kFirst);
    bar.Down(kFirst, button);
    EXPECT_EQ(bar.Up(kFirst, button)[2], "ButtonClicked 0");
  }
}

TEST(CommandBarPressTest, WithoutSoundEffectsNothingSounds) {
  TestBar bar({kPush, kDropDown});
  bar.buttons.Add({.Caption = "&M", .ButtonType = kMenu}, Metrics());
  bar.properties.SoundEffects = false;
  EXPECT_EQ(bar.Down(kFirst),
            (Strings{"take capture", "MouseDown 1 0 10,10", "paint 0 sunken|flat shifted"}));
  EXPECT_EQ(bar.Do(bar.input.AccessKeyPress('m')), (Strings{"paint 2 flat", "Dropdown 2"}));
  bar.properties.SoundEffects = true;
  EXPECT_EQ(bar.Do(bar.input.AccessKeyPress('m')), (Strings{"paint 2 flat", "click sound", "Dropdown 2"}));
}

TEST(CommandBarPressTest, DraggedOffAButtonIsUpAndDownAgainWhenThePointerReturns) {
  TestBar bar({kPush, kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  EXPECT_EQ(bar.Move(kFirst + 1), (Strings{"MouseMove 1 0 11,10", "paint 0 sunken|raised shifted"}));
  EXPECT_EQ(bar.Move(kSecond), (Strings{"MouseMove 1 0 30,10", "paint 0 raised"}));
  EXPECT_EQ(bar.Tick(kSecond), (Strings{"paint 0 flat", "MouseLeave 0", "paint 1 raised", "MouseHover 1"}));
  EXPECT_EQ(bar.Move(kSecond + 1), (Strings{"MouseMove 1 0 31,10", "paint 0 flat"}));
  EXPECT_EQ(bar.Move(kFirst), (Strings{"MouseMove 1 0 10,10", "paint 0 sunken|flat shifted"}));
  EXPECT_EQ(bar.Tick(kFirst),
            (Strings{"paint 1 flat", "MouseLeave 1", "paint 0 sunken|raised shifted", "MouseHover 0"}));
  EXPECT_EQ(bar.Up(kFirst),
            (Strings{"release capture", "paint 0 raised", "ButtonClicked 0", "MouseUp 1 0 10,10"}));
}

TEST(CommandBarPressTest, ReleasedElsewhereNothingIsClicked) {
  for (const int elsewhere : {kSecond, kBeside}) {
    TestBar bar({kPush, kPush});
    bar.Hover(kFirst);
    bar.Down(kFirst);
    bar.Move(elsewhere);
    bar.Tick(elsewhere);  // the other button is hot by now
    EXPECT_EQ(bar.Up(elsewhere).size(), 2U);
    EXPECT_EQ(bar.input.PressedButton(), -1);
  }
}

TEST(CommandBarPressTest, AButtonReleasedElsewhereAtOnceIsFlatAtTheNextTick) {
  TestBar bar({kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  EXPECT_EQ(bar.Up(kBeside), (Strings{"release capture", "paint 0 raised", "MouseUp 1 0 500,10"}));
  EXPECT_EQ(bar.Tick(kBeside), (Strings{"paint 0 flat", "MouseLeave 0"}));
}

TEST(CommandBarPressTest, ATickThatFindsThePointerElsewhereDrawsThePressedButtonUp) {
  TestBar bar({kPush, kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  EXPECT_EQ(bar.Tick(kSecond), (Strings{"paint 0 flat", "MouseLeave 0", "paint 1 raised", "MouseHover 1"}));
  EXPECT_EQ(bar.Up(kSecond), (Strings{"release capture", "MouseUp 1 0 30,10"}));
}

TEST(CommandBarPressTest, OnlyAHotButtonIsClicked) {
  TestBar bar({kPush});
  bar.Down(kFirst);  // before the first tick
  EXPECT_EQ(bar.Up(kFirst), (Strings{"release capture", "paint 0 flat", "MouseUp 1 0 10,10"}));
  bar.Down(kFirst);
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"paint 0 sunken|raised shifted", "MouseHover 0"}));
  EXPECT_EQ(bar.Up(kFirst)[2], "ButtonClicked 0");
}

TEST(CommandBarPressTest, AReleaseWithoutAPressClicksNothing) {
  TestBar bar({kPush});
  bar.Hover(kFirst);
  EXPECT_EQ(bar.Up(kFirst), (Strings{"MouseUp 1 0 10,10"}));
}

TEST(CommandBarPressTest, TheSecondPressOfADoubleClickIsNone) {
  TestBar bar({kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  bar.Up(kFirst);
  EXPECT_EQ(bar.Do(bar.input.DblClick()), (Strings{"DblClick"}));
  EXPECT_EQ(bar.input.PressedButton(), -1);
  EXPECT_EQ(bar.Move(kFirst), (Strings{"MouseMove 1 0 10,10"}));
  EXPECT_EQ(bar.Up(kFirst), (Strings{"MouseUp 1 0 10,10"}));
}

TEST(CommandBarPressTest, APressOnNothingUsableStopsHoveringUntilTheRelease) {
  TestBar bar({kPush, kSeparator, kPush});
  bar.buttons.SetGrayed(0, true);
  constexpr int kSeparatorPlace = 27;
  constexpr int kLast = 40;
  for (const int dead : {kFirst, kSeparatorPlace, kBeside}) {
    SCOPED_TRACE(dead);
    EXPECT_EQ(bar.Down(dead).size(), 2U);
    EXPECT_EQ(bar.input.PressedButton(), -1);
    EXPECT_EQ(bar.Move(kLast).size(), 1U);
    for (int i = 0; i < 10; ++i) EXPECT_EQ(bar.Tick(kLast), Strings{});
    EXPECT_EQ(bar.Up(kLast), (Strings{"release capture", "MouseUp 1 0 40,10"}));
    EXPECT_EQ(bar.Tick(kLast), (Strings{"paint 2 raised", "MouseHover 2"}));
    EXPECT_EQ(bar.Tick(kBeside), (Strings{"paint 2 flat", "MouseLeave 2"}));
  }
}

TEST(CommandBarPressTest, ADeadPressLooksUpThePartUnderTheMouseAllTheSame) {
  TestBar bar({kDropDown});
  bar.Down(kBeside);
  bar.Tick(kArrow);
  EXPECT_EQ(bar.buttons.State(0), 2);
}

TEST(CommandBarPressTest, ALivePressDoesNotStopHovering) {
  TestBar bar({kPush, kPush});
  bar.Down(kBeside);
  bar.Down(kFirst, 2);  // the press that counts is the last
  EXPECT_EQ(bar.Tick(kSecond), (Strings{"paint 1 raised", "MouseHover 1"}));
}

TEST(CommandBarPressTest, AToggleButtonFlips) {
  TestBar bar({kToggle});
  bar.Hover(kFirst);
  EXPECT_EQ(bar.Down(kFirst),
            (Strings{"take capture", "MouseDown 1 0 10,10", "paint 0 sunken|raised shifted", "click sound"}));
  EXPECT_EQ(bar.buttons.State(0), 0);
  EXPECT_EQ(bar.Up(kFirst), (Strings{"release capture", "paint 0 sunken shifted light", "ButtonClicked 0",
                                     "MouseUp 1 0 10,10"}));
  EXPECT_EQ(bar.buttons.State(0), 1);
  EXPECT_EQ(bar.Tick(kBeside), (Strings{"MouseLeave 0"}));

  bar.Hover(kFirst);
  EXPECT_EQ(bar.Down(kFirst)[2], "paint 0 sunken|raised shifted light");
  EXPECT_EQ(bar.Move(kBeside)[1], "paint 0 sunken shifted light");  // off the button it rests, sunken as well
  bar.Move(kFirst);
  EXPECT_EQ(bar.Up(kFirst),
            (Strings{"release capture", "paint 0 raised", "ButtonClicked 0", "MouseUp 1 0 10,10"}));
  EXPECT_EQ(bar.buttons.State(0), 0);
}

TEST(CommandBarPressTest, AToggleButtonIsFlippedBeforeItIsReported) {
  TestBar bar({kToggle});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  std::optional<int> reported;
  bar.On("ButtonClicked 0", [&] { reported = bar.buttons.State(0); });
  bar.Up(kFirst);
  EXPECT_EQ(reported, 1);
}

TEST(CommandBarPressTest, AnyStateButOneIsOff) {
  TestBar bar({kToggle});
  bar.buttons.SetState(0, 5);
  bar.Hover(kFirst);
  bar.Down(kFirst);
  bar.Up(kFirst);
  EXPECT_EQ(bar.buttons.State(0), 1);
}

TEST(CommandBarPressTest, AMenuButtonDropsDownAtOnceAndSilently) {
  TestBar bar({kMenu});
  bar.Hover(kFirst);
  EXPECT_EQ(bar.Down(kFirst), (Strings{"take capture", "MouseDown 1 0 10,10", "paint 0 sunken|raised shifted",
                                       "Dropdown 0", "paint 0 flat"}));
}

TEST(CommandBarPressTest, AMenuButtonIsClickedWhenItIsReleasedWithoutAMenu) {
  TestBar bar({kMenu});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  EXPECT_EQ(bar.Up(kFirst),
            (Strings{"release capture", "paint 0 raised", "ButtonClicked 0", "MouseUp 1 0 10,10"}));
}

TEST(CommandBarPressTest, TheArrowPartDropsDownAtOnceAndIsNotClicked) {
  TestBar bar({kDropDown});
  bar.Hover(kArrow);
  EXPECT_EQ(bar.Down(kArrow), (Strings{"take capture", "MouseDown 1 0 28,10", "paint 0 raised|sunken",
                                       "Dropdown 0", "paint 0 flat"}));
  EXPECT_EQ(bar.Up(kArrow), (Strings{"release capture", "MouseUp 1 0 28,10"}));
}

TEST(CommandBarPressTest, TheArrowPartOfAButtonThatIsNotHotSinksAlone) {
  TestBar bar({kDropDown});
  EXPECT_EQ(bar.Down(kArrow)[2], "paint 0 flat|sunken");
}

TEST(CommandBarPressTest, ThePushPartOfADropDownButtonIsAPushButton) {
  TestBar bar({kDropDown});
  bar.Hover(kFirst);
  EXPECT_EQ(bar.Down(kFirst),
            (Strings{"take capture", "MouseDown 1 0 10,10", "paint 0 sunken|raised shifted", "click sound"}));
  EXPECT_EQ(bar.Up(kFirst),
            (Strings{"release capture", "paint 0 raised", "ButtonClicked 0", "MouseUp 1 0 10,10"}));
}

TEST(CommandBarPressTest, ThePartThatWasPressedCountsNotTheOneUnderTheRelease) {
  TestBar bar({kDropDown});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  EXPECT_EQ(bar.Move(kArrow)[1], "paint 0 sunken|raised shifted");
  EXPECT_EQ(bar.Up(kArrow)[2], "ButtonClicked 0");
  EXPECT_EQ(bar.buttons.State(0), 0);  // the push part again

  bar.Down(kArrow);
  bar.Move(kFirst);
  EXPECT_EQ(bar.Up(kFirst), (Strings{"release capture", "paint 0 raised", "MouseUp 1 0 10,10"}));
}

TEST(CommandBarPressTest, ASecondMouseButtonBeginsAnotherPress) {
  TestBar bar({kPush, kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst, 1);
  EXPECT_EQ(bar.Down(kSecond, 2), (Strings{"take capture", "MouseDown 2 0 30,10", "paint 0 raised",
                                           "paint 1 sunken|flat shifted", "click sound"}));
  EXPECT_EQ(bar.input.PressedButton(), 1);
  EXPECT_EQ(bar.Down(kBeside, 4), (Strings{"take capture", "MouseDown 4 0 500,10", "paint 1 flat"}));
  EXPECT_EQ(bar.input.PressedButton(), -1);
  EXPECT_EQ(bar.Up(kFirst, 4), (Strings{"release capture", "MouseUp 4 0 10,10"}));
  EXPECT_EQ(bar.Up(kFirst, 1), (Strings{"MouseUp 1 0 10,10"}));

  bar.Down(kFirst, 1);
  EXPECT_EQ(bar.Down(kFirst, 2),
            (Strings{"take capture", "MouseDown 2 0 10,10", "paint 0 sunken|raised shifted", "click sound"}));
}

TEST(CommandBarPressTest, ALostCaptureCancelsThePress) {
  TestBar bar({kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  EXPECT_EQ(bar.Do(bar.input.CaptureLost()), (Strings{"paint 0 raised"}));
  EXPECT_EQ(bar.input.PressedButton(), -1);
  EXPECT_EQ(bar.Do(bar.input.CaptureLost()), Strings{});
  EXPECT_EQ(bar.Up(kFirst), (Strings{"MouseUp 1 0 10,10"}));

  bar.Down(kFirst);
  bar.Move(kBeside);
  EXPECT_EQ(bar.Do(bar.input.CaptureLost()), Strings{});  // it is drawn up already
  bar.Down(kBeside);
  EXPECT_EQ(bar.Do(bar.input.CaptureLost()), Strings{});
  EXPECT_EQ(bar.Tick(kBeside), (Strings{"paint 0 flat", "MouseLeave 0"}));  // a dead press is over as well
}

TEST(CommandBarPressTest, AMoveWithoutAMouseButtonEndsAPressThatWasReleasedUnseen) {
  TestBar bar({kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  EXPECT_EQ(bar.Move(kFirst, 0), (Strings{"MouseMove 0 0 10,10", "release capture", "paint 0 raised"}));
  EXPECT_EQ(bar.input.PressedButton(), -1);
  bar.Down(kBeside);
  EXPECT_EQ(bar.Move(kBeside, 0), (Strings{"MouseMove 0 0 500,10", "release capture"}));
  EXPECT_EQ(bar.Tick(kBeside), (Strings{"paint 0 flat", "MouseLeave 0"}));
}

TEST(CommandBarPressTest, AFreeMoveLooksUpThePartUnderTheMouse) {
  TestBar bar({kDropDown});
  EXPECT_EQ(bar.Move(kArrow, 0), (Strings{"MouseMove 0 0 28,10"}));
  EXPECT_EQ(bar.buttons.State(0), 2);
}

TEST(CommandBarPressTest, AButtonGrayedInMidPressIsNotClicked) {
  TestBar bar({kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  bar.buttons.SetGrayed(0, true);
  EXPECT_EQ(bar.Move(kFirst)[1], "paint 0 flat");
  EXPECT_EQ(bar.Up(kFirst), (Strings{"release capture", "MouseUp 1 0 10,10"}));
}

TEST(CommandBarPressTest, AButtonRemovedInMidPressTakesThePressWithIt) {
  TestBar bar({kPush, kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  bar.buttons.Remove(0, Metrics());
  EXPECT_EQ(bar.input.PressedButton(), -1);
  EXPECT_EQ(bar.Move(kFirst), (Strings{"MouseMove 1 0 10,10"}));
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"paint 0 raised", "MouseHover 0"}));
  EXPECT_EQ(bar.Up(kFirst), (Strings{"release capture", "MouseUp 1 0 10,10"}));
}

TEST(CommandBarPressTest, ABarEmptiedInMidPressGoesOn) {
  TestBar bar({kPush, kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  bar.buttons.Remove(0, Metrics());
  bar.buttons.Remove(0, Metrics());
  EXPECT_EQ(bar.Tick(kFirst), Strings{});
  EXPECT_EQ(bar.Move(kFirst), (Strings{"MouseMove 1 0 10,10"}));
  EXPECT_EQ(bar.Up(kFirst), (Strings{"release capture", "MouseUp 1 0 10,10"}));
}

TEST(CommandBarPressTest, AButtonMovedInMidPressIsClickedWhereItIs) {
  TestBar bar({kPush, kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  bar.buttons.Move(0, 1, Metrics());
  EXPECT_EQ(bar.input.PressedButton(), 1);
  EXPECT_EQ(bar.Move(kFirst)[1], "paint 1 raised");
  EXPECT_EQ(bar.Move(kSecond)[1], "paint 1 sunken|raised shifted");
  EXPECT_EQ(bar.Up(kSecond)[2], "ButtonClicked 1");
}

TEST(CommandBarPressTest, WhatTheContainerDoesInMouseDownCounts) {
  const auto press = [](const std::function<void(TestBar&)>& act) {
    TestBar bar({kPush, kPush});
    bar.Hover(kFirst);
    bar.On("MouseDown 1 0 10,10", [&] { act(bar); });
    Strings log = bar.Down(kFirst);
    log.erase(log.begin(), log.begin() + 2);
    return log;
  };
  EXPECT_EQ(press([](TestBar& bar) { bar.buttons.SetGrayed(0, true); }), Strings{});
  EXPECT_EQ(press([](TestBar& bar) { bar.buttons.Remove(1, Metrics()), bar.buttons.Remove(0, Metrics()); }),
            Strings{});
  EXPECT_EQ(press([](TestBar& bar) { bar.buttons.Remove(0, Metrics()); }),
            (Strings{"paint 0 sunken|flat shifted", "click sound"}));
  // A message box takes the mouse: there is nothing to be pressed when it is closed.
  EXPECT_EQ(press([](TestBar& bar) { bar.input.CaptureLost(); }), Strings{});
  EXPECT_EQ(press([](TestBar& bar) {
              bar.Run(bar.input.MouseUp({1, 0, {0, 0}}));
            }),
            (Strings{"release capture", "MouseUp 1 0 0,0"}));
}

TEST(CommandBarPressTest, WhatTheContainerDoesInMouseMoveCounts) {
  TestBar bar({kPush, kPush});
  bar.Hover(kFirst);
  bar.Down(kFirst);
  bar.On("MouseMove 1 0 11,10", [&] { bar.buttons.Remove(0, Metrics()); });
  EXPECT_EQ(bar.Move(kFirst + 1), (Strings{"MouseMove 1 0 11,10"}));
}

// ---------------------------------------------------------------------------------------------------------
// While a menu is open

TEST(CommandBarDropdownTest, AButtonWithAnOpenMenuStaysSunkenUntilTheMenuIsClosed) {
  TestBar bar({kDropDown, kPush});
  bar.Hover(kArrow);
  bar.On("Dropdown 0", [&] {
    // The menu takes the capture, the mouse wanders over it and over the bar.
    bar.Run(bar.input.CaptureLost());
    bar.Run(bar.input.tHitTest_Timer(std::nullopt, {}));
    bar.Run(bar.input.tHitTest_Timer(Point{kFirst, 10}, {}));
    bar.Run(bar.input.tHitTest_Timer(Point{40, 10}, {}));
  });
  EXPECT_EQ(bar.Down(kArrow), (Strings{"take capture", "MouseDown 1 0 28,10", "paint 0 raised|sunken",
                                       "Dropdown 0", "paint 0 flat|sunken", "MouseLeave 0",  // off it
                                       "paint 0 raised|sunken", "MouseHover 0",  // on its push part
                                       "paint 0 flat|sunken", "MouseLeave 0", "paint 1 raised",
                                       "MouseHover 1", "paint 0 flat"}));
  EXPECT_EQ(bar.input.PressedButton(), -1);
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"paint 1 flat", "MouseLeave 1", "paint 0 raised", "MouseHover 0"}));
}

TEST(CommandBarDropdownTest, AFrozenBarLeavesTheButtonSunken) {
  for (const auto type : {kMenu, kDropDown}) {
    TestBar bar({type});
    const int x = type == kMenu ? kFirst : kArrow;
    bar.Hover(x);
    bar.On("Dropdown 0", [&] { bar.input.Freeze(); });
    EXPECT_EQ(bar.Down(x).back(), "Dropdown 0");
    EXPECT_EQ(bar.Do(bar.input.Thaw()), (Strings{"paint bar"}));
  }
}

TEST(CommandBarDropdownTest, ABarThawedByThenIsDrawnAtRest) {
  TestBar bar({kMenu});
  bar.input.Freeze();
  bar.On("Dropdown 0", [&] { bar.input.Thaw(); });
  EXPECT_EQ(bar.Down(kFirst).back(), "paint 0 flat");
}

TEST(CommandBarDropdownTest, AButtonRemovedMeanwhileIsNotDrawn) {
  TestBar bar({kMenu, kPush});
  bar.On("Dropdown 0", [&] { bar.buttons.Remove(0, Metrics()); });
  EXPECT_EQ(bar.Down(kFirst).back(), "Dropdown 0");
}

TEST(CommandBarDropdownTest, AButtonMovedMeanwhileIsDrawnWhereItIs) {
  TestBar bar({kMenu, kPush});
  bar.On("Dropdown 0", [&] { bar.buttons.Move(0, 1, Metrics()); });
  EXPECT_EQ(bar.Down(kFirst).back(), "paint 1 flat");
}

TEST(CommandBarDropdownTest, ReleasedWhileTheMenuIsOpenTheButtonStaysSunken) {
  TestBar bar({kDropDown});
  bar.Hover(kArrow);
  bar.On("Dropdown 0", [&] { bar.Run(bar.input.MouseUp({1, 0, {kBeside, 10}})); });
  EXPECT_EQ(bar.Down(kArrow),
            (Strings{"take capture", "MouseDown 1 0 28,10", "paint 0 raised|sunken", "Dropdown 0",
                     "release capture", "MouseUp 1 0 500,10", "paint 0 flat"}));
}

TEST(CommandBarDropdownTest, OneMenuMayOpenOverAnother) {
  TestBar bar({kMenu, kMenu});
  bar.On("Dropdown 0", [&] {
    bar.Run(bar.input.MouseDown({1, 0, {kSecond, 10}}));
    bar.Run(bar.input.tHitTest_Timer(Point{kFirst, 10}, {}));  // its own menu is still open
  });
  EXPECT_EQ(bar.Down(kFirst),
            (Strings{"take capture", "MouseDown 1 0 10,10", "paint 0 sunken|flat shifted", "Dropdown 0",
                     "take capture", "MouseDown 1 0 30,10", "paint 1 sunken|flat shifted", "Dropdown 1",
                     "paint 1 flat", "paint 0 sunken|raised shifted", "MouseHover 0", "paint 0 flat"}));
  EXPECT_EQ(bar.Tick(kBeside), (Strings{"paint 0 flat", "MouseLeave 0"}));
  EXPECT_EQ(bar.Tick(kFirst), (Strings{"paint 0 raised", "MouseHover 0"}));
}

// ---------------------------------------------------------------------------------------------------------
// Access keys and the default action

class BarWithKeys : public TestBar {
 public:
  BarWithKeys() : TestBar({}) {
    for (const auto& [caption, type] :
         std::vector<std::pair<std::string, ButtonType>>{{"Plain", kPush},
                                                         {"&Push", kPush},
                                                         {"&Menu", kMenu},
                                                         {"&Toggle", kToggle},
                                                         {"&Drop", kDropDown}}) {
      buttons.Add({.Caption = caption, .ButtonType = type, .DisplayType = DisplayType::Caption}, Metrics());
    }
  }
  Strings Key(int code) { return Do(input.AccessKeyPress(static_cast<std::int16_t>(code))); }
};

TEST(CommandBarAccessKeyTest, AKeyClicksOrDropsDownItsButton) {
  BarWithKeys bar;
  EXPECT_EQ(bar.Key('p'), (Strings{"ButtonClicked 1"}));
  EXPECT_EQ(bar.Key('m'), (Strings{"paint 2 flat", "click sound", "Dropdown 2"}));
  EXPECT_EQ(bar.Key('d'), (Strings{"paint 4 flat", "click sound", "Dropdown 4"}));
  EXPECT_EQ(bar.Key('t'), (Strings{"ButtonClicked 3"}));
  EXPECT_EQ(bar.buttons.State(3), 0);  // not flipped
}

TEST(CommandBarAccessKeyTest, OtherCodesFindNothing) {
  BarWithKeys bar;
  for (const int code : {int{'P'}, int{'x'}, 0, -1, 13, 27}) EXPECT_EQ(bar.Key(code), Strings{}) << code;
}

TEST(CommandBarAccessKeyTest, TheFirstButtonWithTheKeyEndsTheSearch) {
  BarWithKeys bar;
  bar.buttons.Add({.Caption = "&Print", .DisplayType = DisplayType::Caption}, Metrics());
  EXPECT_EQ(bar.Key('p'), (Strings{"ButtonClicked 1"}));
  bar.buttons.SetGrayed(1, true);
  EXPECT_EQ(bar.Key('p'), Strings{});
  bar.buttons.Remove(1, Metrics());
  EXPECT_EQ(bar.Key('p'), (Strings{"ButtonClicked 4"}));
}

TEST(CommandBarAccessKeyTest, ADisabledButtonDoesNothing) {
  BarWithKeys bar;
  for (int i = 0; i < bar.buttons.Count(); ++i) bar.buttons.SetGrayed(i, true);
  for (const char key : {'p', 'm', 't', 'd'}) EXPECT_EQ(bar.Key(key), Strings{}) << key;
}

TEST(CommandBarAccessKeyTest, KeysWorkOnAFrozenBar) {
  BarWithKeys bar;
  bar.input.Freeze();
  EXPECT_EQ(bar.Key('m'), (Strings{"paint 2 flat", "click sound", "Dropdown 2"}));
  EXPECT_EQ(bar.Key('p'), (Strings{"ButtonClicked 1"}));
}

TEST(CommandBarDefaultActionTest, ItDoesWhatAClickDoes) {
  BarWithKeys bar;
  const auto act = [&](int index) { return bar.Do(bar.input.DoDefaultAction(index)); };
  EXPECT_EQ(act(0), (Strings{"click sound", "paint 0 flat", "ButtonClicked 0"}));
  EXPECT_EQ(act(2), (Strings{"paint 2 sunken|flat shifted", "Dropdown 2", "paint 2 flat"}));
  EXPECT_EQ(act(3), (Strings{"click sound", "paint 3 sunken shifted light", "ButtonClicked 3"}));
  EXPECT_EQ(bar.buttons.State(3), 1);
  EXPECT_EQ(act(3), (Strings{"click sound", "paint 3 flat", "ButtonClicked 3"}));
  EXPECT_EQ(bar.buttons.State(3), 0);
  bar.buttons.SetState(4, 2);
  EXPECT_EQ(act(4), (Strings{"click sound", "paint 4 flat", "ButtonClicked 4"}));
  EXPECT_EQ(bar.buttons.State(4), 0);
  bar.Hover(kFirst);
  EXPECT_EQ(act(0), (Strings{"click sound", "paint 0 raised", "ButtonClicked 0"}));
  bar.properties.SoundEffects = false;
  EXPECT_EQ(act(1), (Strings{"paint 1 flat", "ButtonClicked 1"}));
}

TEST(CommandBarDefaultActionTest, WhatCannotBeClickedDoesNothing) {
  TestBar bar({kSeparator, kPush});
  bar.buttons.SetGrayed(1, true);
  for (const int index : {-1, 0, 1, 2}) EXPECT_EQ(bar.Do(bar.input.DoDefaultAction(index)), Strings{});
}

// ---------------------------------------------------------------------------------------------------------
// Anything at any time

/// A container that does whatever it likes whenever it likes, and a screen that remembers how each button was
/// last drawn.
class RandomWalk {
 public:
  explicit RandomWalk(unsigned seed) : random_(seed) {
    Apply(input_.Show(true));
    for (int i = 0; i < 6; ++i) AddButton();
  }

  void Run(int steps) {
    for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) Step();
    // In the end everything comes to rest, the container too.
    depth_ = kDeepest;
    Apply(input_.Thaw());
    LoseCapture();
    Apply(input_.tHitTest_Timer(std::nullopt, {}));
    EXPECT_EQ(input_.HotButton(), -1);
    EXPECT_EQ(input_.PressedButton(), -1);
    EXPECT_FALSE(tip_);
    EXPECT_FALSE(HoveredButtonIsThere());
    for (const BarButton& button : buttons_.All()) {
      EXPECT_EQ(Said(drawn_[button.Id]), Said(RedrawLook(button)))
          << "type " << static_cast<int>(button.ButtonType);
    }
  }

  /// How often an effect was seen, so that a walk is known to have gone somewhere.
  std::map<std::string, int> seen;

 private:
  static constexpr int kDeepest = 3;  ///< So many events may be handled within one another.

  bool HoveredButtonIsThere() const { return buttons_.IndexOf(hovered_) >= 0; }
  int Any(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
  bool Once(int in) { return Any(in) == 0; }
  BarMetrics SomeMetrics() { return Metrics(26, dockable_); }
  Point SomePoint() {
    const int width = buttons_.Count() == 0 ? 20 : buttons_.All().back().Right + 20;
    return {Any(width + 5) - 5, Once(8) ? Any(60) - 10 : 10};
  }

  void Step() {
    if (Once(3)) place_ = SomePoint();
    const auto button = static_cast<std::int16_t>(1 << Any(2));
    switch (Any(16)) {
      case 0:
      case 1:
      case 2:
      case 3:
        return Apply(input_.tHitTest_Timer(Once(12) ? std::nullopt : std::optional(place_), place_));
      case 4:
        for (int i = 0; i < 9; ++i) Apply(input_.tHitTest_Timer(place_, place_));
        return;
      case 5:
      case 6:
      case 7:
        held_ |= button;
        return Apply(input_.MouseDown({button, 0, place_}));
      case 8:
      case 9:
        return Apply(input_.MouseMove({Once(10) ? std::int16_t{0} : held_, 0, place_}));
      case 10:
      case 11:
      case 12:
        held_ = static_cast<std::int16_t>(held_ & ~button);
        return Apply(input_.MouseUp({button, 0, place_}));
      case 13:
        return Apply(Once(2) ? input_.AccessKeyPress(static_cast<std::int16_t>('a' + Any(6)))
                             : input_.DoDefaultAction(Any(10) - 1));
      case 14:
        return Once(3) ? LoseCapture() : Apply(input_.DblClick());
      default:
        return ChangeSomething();
    }
  }

  void ChangeSomething() {
    const int index = Any(buttons_.Count() + 2) - 1;
    switch (Any(9)) {
      case 0:
        return AddButton();
      case 1:
        return Apply(buttons_.Remove(index, SomeMetrics()));
      case 2:
        Apply(buttons_.Move(index, Any(8), SomeMetrics()));
        return PaintAll();  // as the one who moves a button does
      case 3:
      case 4:
        return Apply(buttons_.SetGrayed(index, Once(2)));
      case 5:
        if (buttons_.Find(index) != nullptr && buttons_.Find(index)->Is(kToggle)) {
          Apply(buttons_.SetState(index, Any(2)));
        }
        return;
      case 6:
        return Apply(
            buttons_.SetCaption(index, std::string(static_cast<std::size_t>(Any(4)), 'x'), SomeMetrics()));
      case 7:
        return Once(3) ? Apply(input_.Freeze()) : Apply(input_.Thaw());
      default:
        properties_.SoundEffects = Once(2);
        dockable_ = Once(2);
        return Apply(buttons_.LayOut(SomeMetrics()));
    }
  }

  void AddButton() {
    if (buttons_.Count() >= 8) return;
    const std::string caption = {'&', static_cast<char>('a' + Any(5))};
    Apply(buttons_.Add({.Caption = caption,
                        .Picture = SomePicture(),
                        .PictureSize = {16, 16},
                        .ButtonType = static_cast<ButtonType>(Any(5)),
                        .DisplayType = static_cast<DisplayType>(Any(3)),
                        .GrayBtn = Once(4)},
                       SomeMetrics()));
  }

  void Apply(const BarChange& change) {
    if (change.redrawButton) Draw(*change.redrawButton, RedrawLook(Button(*change.redrawButton)));
    if (change.refresh) PaintAll();
  }

  void PaintAll() {
    const std::vector<ButtonLook> looks = PaintLooks(buttons_.All(), true);
    for (int i = 0; i < buttons_.Count(); ++i) Draw(i, looks[static_cast<std::size_t>(i)]);
  }

  void Draw(int index, const ButtonLook& look) { drawn_[Button(index).Id] = look; }

  const BarButton& Button(int index) {
    const BarButton* button = buttons_.Find(index);
    EXPECT_NE(button, nullptr) << index;
    static const BarButton kNone;
    return button != nullptr ? *button : kNone;
  }

  void Apply(BarReaction reaction) {
    for (;;) {
      for (const BarEffect::Any& effect : reaction.effects) {
        const std::string said = Said(effect);
        ++seen[said.substr(0, said.find(' '))];
        std::visit([&](const auto& e) { Apply(e); }, effect);
      }
      if (!reaction.then) return;
      reaction = reaction.then();
    }
  }

  void Apply(const BarEffect::PaintButton& e) { Draw(e.button, e.look); }
  void Apply(const BarEffect::PaintBar&) { PaintAll(); }

  void Apply(const BarEffect::RaiseMouse&) { Container(); }

  void Apply(const BarEffect::RaiseButton& e) {
    const BarButton button = Button(e.button);
    const bool dropsDown = button.Is(kMenu) || button.Is(kDropDown);
    switch (e.event) {
      case BarButtonEvent::MouseHover:
        EXPECT_TRUE(button.Enabled);
        EXPECT_FALSE(input_.Frozen());
        EXPECT_EQ(input_.HotButton(), e.button);
        EXPECT_FALSE(HoveredButtonIsThere()) << "the last one was not left";
        hovered_ = button.Id;
        break;
      case BarButtonEvent::MouseLeave:
        EXPECT_NE(input_.HotButton(), e.button);
        EXPECT_FALSE(input_.Frozen());
        if (HoveredButtonIsThere()) {
          EXPECT_EQ(hovered_, button.Id);
        }
        hovered_ = ButtonId::None;
        break;
      case BarButtonEvent::ButtonClicked:
        EXPECT_TRUE(button.Enabled);
        break;
      case BarButtonEvent::Dropdown:
        EXPECT_TRUE(button.Enabled);
        EXPECT_TRUE(dropsDown);
        break;
    }
    EXPECT_FALSE(button.Is(kSeparator) && e.event != BarButtonEvent::ButtonClicked);
    Container();
  }

  void Apply(const BarEffect::RaiseDblClick&) { Container(); }
  void Apply(const BarEffect::PlayClick&) { EXPECT_TRUE(properties_.SoundEffects); }

  void Apply(const BarEffect::ShowTip&) {
    EXPECT_FALSE(tip_);
    EXPECT_FALSE(input_.Frozen());
    EXPECT_EQ(Button(input_.HotButton()).DisplayType, DisplayType::Picture);
    tip_ = true;
  }
  void Apply(const BarEffect::HideTip&) {
    EXPECT_TRUE(tip_);
    tip_ = false;
  }

  void Apply(const BarEffect::TakeCapture&) { captured_ = true; }
  void Apply(const BarEffect::ReleaseCapture&) {
    EXPECT_TRUE(captured_);
    LoseCapture();  // the platform says so at once
  }
  void Apply(const BarEffect::StartHoverTimer&) {}
  void Apply(const BarEffect::StopHoverTimer&) { ADD_FAILURE() << "the bar stays in run mode"; }

  void LoseCapture() {
    captured_ = false;
    Apply(input_.CaptureLost());
  }

  /// The container's turn, in an event.
  void Container() {
    if (depth_ >= kDeepest || !Once(3)) return;
    ++depth_;
    for (int i = Any(4); i > 0; --i) Once(2) ? ChangeSomething() : Step();
    --depth_;
  }

  std::mt19937 random_;
  CommandBarButtons buttons_{WesternLetterCase()};
  CommandBarProperties properties_;
  CommandBarInput input_{buttons_, properties_};
  Point place_;
  std::int16_t held_ = 0;
  bool dockable_ = false;
  bool captured_ = false;
  bool tip_ = false;
  int depth_ = 0;
  ButtonId hovered_ = ButtonId::None;  ///< Reported by MouseHover and not left yet, unless it was removed.
  std::map<ButtonId, ButtonLook> drawn_;
};

TEST(CommandBarRandomTest, WhateverHappensTheBarKeepsItsPromises) {
  std::map<std::string, int> seen;
  for (unsigned seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    RandomWalk walk(seed);
    walk.Run(300);
    if (HasFailure()) return;
    for (const auto& [effect, count] : walk.seen) seen[effect] += count;
  }
  for (const char* effect : {"ButtonClicked", "Dropdown", "MouseHover", "MouseLeave", "tip", "hide", "click",
                             "take", "release", "DblClick", "paint"}) {
    EXPECT_GT(seen[effect], 100) << effect;
  }
}

}  // namespace
}  // namespace snip::test
