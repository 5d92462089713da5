#include "ui/menu/MenuInput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/MenuUnderTest.h"
#include "tests/unit/TestMenu.h"

namespace snip::test {
namespace {

Strings operator+(Strings first, const Strings& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

const Strings kUnloading = {"unowned",        "stop timer", "release parts",
                            "pending events", "HideMenu",   "destroy"};
const Strings kLeavingDocked = {"release capture", "hide"};

// ---- Popup

TEST(MenuPopup, OpensDocked) {
  MenuUnderTest menu("i-i");
  menu.Popup();
  // 315 * 3 - 225 + 165 + 120 twips high.
  EXPECT_EQ(menu.Log(), (Strings{"load", "release capture", "start timer", "unfold at 200,100 to 73,67",
                                 "play 9", "pending events", "take capture"}));
  EXPECT_EQ(menu.input.State(), MenuState::Docked);
  EXPECT_EQ(menu.input.HotItem(), MenuHot::kNothingYet);
  EXPECT_EQ(menu.input.Mode(), (MenuMode{.allowDetach = true}));
}

TEST(MenuPopup, WithoutDetachingItIsElevenPixelsLower) {
  MenuUnderTest menu("i-i");
  menu.Popup(false);
  EXPECT_EQ(menu.Log()[3], "unfold at 200,100 to 73,56");
  EXPECT_FALSE(menu.input.Mode().allowDetach);
}

TEST(MenuPopup, AFormThatIsThereIsNotMadeAgain) {
  MenuUnderTest menu("i");
  menu.input.Load();
  menu.window = menu.parts = true;
  menu.Popup();
  EXPECT_EQ(menu.Log().front(), "release capture");
}

TEST(MenuPopup, UsesTheMetricsOfTheFormThatWasLoaded) {
  MenuUnderTest menu("i");
  menu.others = [&](const std::string& effect) {
    if (effect == "load") menu.metrics.ItemHeight = 30 * 15;
  };
  menu.Popup(false);
  EXPECT_EQ(menu.Log()[3], "unfold at 200,100 to 73,38");
}

TEST(MenuPopup, WithoutItemsItShowsNothingButTheTimerRuns) {
  MenuUnderTest menu("");
  menu.Popup();
  EXPECT_EQ(menu.Log(), (Strings{"load", "release capture", "start timer"}));
  EXPECT_EQ(menu.input.State(), MenuState::Hidden);
  menu.Tick(20);
  menu.Move({5, 5});
  menu.Down({5, 5});
  menu.Up({5, 5});
  menu.Down(menu.kOutside);
  EXPECT_EQ(menu.Log(), Strings{});
  EXPECT_TRUE(menu.timer);
}

TEST(MenuPopup, AnOpenMenuIsHiddenAndOpenedAnew) {
  MenuUnderTest menu("iii");
  menu.Open();
  menu.Move(menu.kBar);
  menu.Tick(12);
  menu.Log();
  menu.Popup();
  EXPECT_EQ(menu.Log(), (Strings{"release capture", "hide tip", "hide", "pending events", "release capture",
                                 "start timer", "unfold at 200,100 to 73,82", "play 9", "pending events",
                                 "take capture"}));
  EXPECT_EQ(menu.input.HotItem(), MenuHot::kNothingYet);
}

TEST(MenuPopup, ATornOffMenuIsDockedAgain) {
  MenuUnderTest menu("iii");
  menu.Float();
  menu.Popup(false);
  EXPECT_EQ(menu.Log(), (Strings{"unowned", "hide", "pending events", "release capture", "start timer",
                                 "unfold at 200,100 to 73,71", "play 9", "pending events", "take capture"}));
  EXPECT_EQ(menu.input.State(), MenuState::Docked);
  EXPECT_FALSE(menu.input.Mode().floating);
}

TEST(MenuPopup, AnOpenMenuThatHasLostItsItemsIsHidden) {
  MenuUnderTest menu("iii");
  menu.Open();
  menu.items.Clear();
  menu.Popup();
  EXPECT_EQ(menu.Log(),
            (Strings{"release capture", "hide", "pending events", "release capture", "start timer"}));
  EXPECT_EQ(menu.input.State(), MenuState::Hidden);
}

TEST(MenuPopup, ClosedAmongThePendingEventsItDoesNotTakeTheMouse) {
  MenuUnderTest menu("iii");
  menu.others = [&](const std::string& effect) {
    if (effect == "pending events") {
      menu.others = nullptr;
      menu.Apply(menu.input.Deactivated());
    }
  };
  menu.Popup();
  EXPECT_EQ(menu.input.State(), MenuState::Hidden);
  EXPECT_FALSE(menu.captured);
  EXPECT_EQ(menu.Log().back(), "destroy");
}

TEST(MenuPopup, TornOffAmongThePendingEventsItDoesNotTakeTheMouse) {
  MenuUnderTest menu("iii");
  menu.others = [&](const std::string& effect) {
    if (effect == "pending events") menu.Down(menu.kBar);
  };
  menu.Popup();
  EXPECT_EQ(menu.input.State(), MenuState::Floating);
  EXPECT_FALSE(menu.captured);
}

TEST(MenuPopup, UnloadedWhileUnfoldingItIsSilent) {
  MenuUnderTest menu("iii");
  menu.others = [&](const std::string& effect) {
    if (effect.starts_with("unfold")) menu.Apply(menu.input.Unload());
  };
  menu.Popup();
  const Strings log = menu.Log();
  EXPECT_EQ(std::count(log.begin(), log.end(), "play 9"), 0);
  EXPECT_FALSE(menu.captured);
}

// ---- Moving

TEST(MenuMove, MakesItemsHot) {
  MenuUnderTest menu("i-d");
  menu.Open();
  menu.Move(menu.On(0));
  EXPECT_EQ(menu.Log(), (Strings{"paint row 0", "Selected 0"}));
  menu.Move(menu.On(0));
  EXPECT_EQ(menu.Log(), Strings{});
  menu.Move(menu.On(1));
  EXPECT_EQ(menu.Log(), (Strings{"paint row 0", "paint row 1", "Selected 1"}));
  menu.Move(menu.On(2));
  EXPECT_EQ(menu.Log(), (Strings{"paint row 1", "paint row 2", "Selected 2"}));
  menu.Move(menu.kBar);
  EXPECT_EQ(menu.Log(), (Strings{"paint row 2", "paint drag bar"}));
  EXPECT_EQ(menu.input.HotItem(), MenuHot::kDragBar);
  menu.Move(menu.kOutside);
  EXPECT_EQ(menu.Log(), (Strings{"paint drag bar"}));
  EXPECT_EQ(menu.input.HotItem(), MenuHot::kNoItem);
}

TEST(MenuMove, SelectedTellsTheId) {
  MenuUnderTest menu("i");
  menu.items.Add({.Caption = "Cut", .ID = 77}, menu.metrics, SevenPixels);
  menu.Open();
  menu.Move(menu.On(1));
  EXPECT_EQ(menu.Log().back(), "Selected 77");
}

TEST(MenuMove, WithTheRightButtonOnlyWhenAllowed) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.Move(menu.On(0), MouseButton::kRight);
  EXPECT_EQ(menu.Log(), Strings{});
  menu.Move(menu.On(0), MouseButton::kLeft);
  EXPECT_EQ(menu.Log().back(), "Selected 0");
  menu.input.AllowRightClick = true;
  menu.Move(menu.On(1), MouseButton::kRight);
  EXPECT_EQ(menu.Log().back(), "Selected 1");
}

TEST(MenuMove, WithoutItemsNothingHappens) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.Move(menu.On(1));
  menu.Log();
  menu.items.Clear();
  EXPECT_EQ(menu.input.HotItem(), MenuHot::kNoItem);
  menu.Move(menu.kBar);
  EXPECT_EQ(menu.Log(), Strings{});
}

TEST(MenuMove, AHotItemThatIsGoneIsNotPainted) {
  MenuUnderTest menu("iii");
  menu.Open();
  menu.Move(menu.On(2));
  menu.Log();
  menu.items = MenuOf("i");
  menu.Move(menu.On(0));
  EXPECT_EQ(menu.Log(), (Strings{"paint row 0", "Selected 0"}));
}

TEST(MenuMove, OffATornOffMenuNothingIsHot) {
  MenuUnderTest menu("iii");
  menu.Float();
  menu.Move(menu.On(1));
  menu.Log();
  menu.Apply(menu.input.MouseLeave());
  EXPECT_EQ(menu.Log(), Strings{"paint row 1"});
  EXPECT_EQ(menu.input.HotItem(), MenuHot::kNoItem);
  menu.Move(menu.On(1));
  menu.Down(menu.On(1));
  menu.Log();
  menu.Apply(menu.input.MouseLeave());
  EXPECT_EQ(menu.Log(), Strings{});
}

// ---- Choosing

TEST(MenuClick, OfADockedMenuClosesItAroundTheEvents) {
  MenuUnderTest menu("i-i");
  menu.Open();
  menu.Move(menu.On(2));
  menu.Down(menu.On(2));
  menu.Log();
  menu.Up(menu.On(2));
  EXPECT_EQ(
      menu.Log(),
      (Strings{"take capture", "play 8", "release capture", "hide", "HideMenu", "Clicked 2"} + kUnloading));
  EXPECT_EQ(menu.input.State(), MenuState::Hidden);
  EXPECT_FALSE(menu.input.Loaded());
}

TEST(MenuClick, NeedsNoPressOnTheItem) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.Move(menu.On(1), MouseButton::kLeft);
  menu.Log();
  menu.Up(menu.On(1));
  EXPECT_EQ(menu.Log()[5], "Clicked 1");
}

TEST(MenuClick, OfATornOffMenuKeepsIt) {
  MenuUnderTest menu("i-i");
  menu.Float();
  for (int click = 0; click < 2; ++click) {
    menu.Move(menu.On(2));
    menu.Log();
    menu.Down(menu.On(2));
    menu.Up(menu.On(2));
    EXPECT_EQ(menu.Log(), (Strings{"take capture", "release capture", "play ToolbarClick", "Clicked 2"}));
  }
  EXPECT_EQ(menu.input.State(), MenuState::Floating);
}

TEST(MenuClick, OnSeparatorsAndDisabledItemsDoesNothing) {
  MenuUnderTest menu("i-d");
  menu.Open();
  for (const int index : {1, 1, 2, 2}) {
    menu.Move(menu.On(index));
    menu.Down(menu.On(index));
    menu.Log();
    menu.Up(menu.On(index));
    EXPECT_EQ(menu.Log(), Strings{"take capture"}) << index;
  }
  EXPECT_EQ(menu.input.State(), MenuState::Docked);
  EXPECT_TRUE(menu.captured);
}

TEST(MenuClick, OnASeparatorOfATornOffMenuDoesNothing) {
  MenuUnderTest menu("i-d");
  menu.Float();
  for (const int index : {1, 2}) {
    menu.Down(menu.On(index));
    menu.Up(menu.On(index));
    EXPECT_EQ(menu.Log(), (Strings{"take capture", "release capture"})) << index;
  }
}

TEST(MenuClick, BetweenTheItemsKeepsTheMenu) {
  MenuUnderTest menu("ii");
  menu.Open();
  const std::vector<Point> places = {{30, 9}, {30, 57}, menu.kBar, {70, 3}};
  for (const Point at : places) {
    menu.Move(at);
    menu.Log();
    menu.Up(at);
    EXPECT_EQ(menu.Log(), Strings{"take capture"}) << Said(at);
  }
}

TEST(MenuClick, ReleasedOutsideClosesADockedMenuOnly) {
  MenuUnderTest docked("ii");
  docked.Open();
  docked.Down(docked.On(0));
  docked.Up(docked.kOutside);
  EXPECT_EQ(docked.Log(), Strings{"take capture"} + kLeavingDocked + kUnloading);

  MenuUnderTest floating("ii");
  floating.Float();
  floating.Down(floating.On(0));
  floating.Up(floating.kOutside);
  EXPECT_EQ(floating.Log(), (Strings{"take capture", "release capture"}));
  EXPECT_EQ(floating.input.State(), MenuState::Floating);
}

TEST(MenuClick, ReleasedOnARowBelowTheWindowChoosesNothing) {
  MenuUnderTest menu("i");
  menu.Open();
  menu.items = MenuOf("iiiiii");
  const Point below = menu.On(5);
  menu.Down(menu.On(0));
  menu.Up(below);
  EXPECT_EQ(menu.Log(), Strings{"take capture"});
  EXPECT_EQ(menu.input.State(), MenuState::Docked);
}

TEST(MenuClick, WithOtherButtonsOnlyWhenAllowed) {
  for (const int button : {MouseButton::kRight, MouseButton::kMiddle}) {
    MenuUnderTest menu("ii");
    menu.Open();
    menu.Down(menu.On(1), button);
    menu.Up(menu.On(1), button);
    EXPECT_EQ(menu.Log(), Strings{"take capture"});
    menu.Up(menu.kOutside, button);
    EXPECT_EQ(menu.Log(), Strings{"take capture"});
    menu.input.AllowRightClick = true;
    menu.Down(menu.On(1), button);
    menu.Up(menu.On(1), button);
    EXPECT_EQ(menu.Log()[5], "Clicked 1");
  }
}

TEST(MenuClick, OnATornOffMenuWithOtherButtonsOnlyWhenAllowed) {
  MenuUnderTest menu("ii");
  menu.Float();
  menu.Down(menu.On(1), MouseButton::kRight);
  menu.Up(menu.On(1), MouseButton::kRight);
  menu.Down(menu.kBar, MouseButton::kRight);
  menu.Up(menu.kCloseBox, MouseButton::kRight);
  EXPECT_EQ(menu.Log(), Strings{});
  menu.input.AllowRightClick = true;
  menu.Down(menu.On(1), MouseButton::kRight);
  menu.Up(menu.On(1), MouseButton::kRight);
  EXPECT_EQ(menu.Log(), (Strings{"take capture", "release capture", "play ToolbarClick", "Clicked 1"}));
}

TEST(MenuClick, WithoutItemsDoesNothingButFreesTheMouse) {
  MenuUnderTest docked("ii");
  docked.Open();
  docked.Down(docked.On(0));
  docked.items.Clear();
  docked.Up(docked.kOutside);
  EXPECT_EQ(docked.Log(), Strings{"take capture"});
  EXPECT_EQ(docked.input.State(), MenuState::Docked);

  MenuUnderTest floating("ii");
  floating.Float();
  floating.Down(floating.On(0));
  floating.items.Clear();
  floating.Up(floating.kCloseBox);
  EXPECT_EQ(floating.Log(), (Strings{"take capture", "release capture"}));
  EXPECT_EQ(floating.input.State(), MenuState::Floating);
}

TEST(MenuClick, TheReleaseOfThePressThatOpenedTheMenuChoosesNothing) {
  // The pointer is where the menu comes up, on its first item.
  MenuUnderTest menu("ii");
  PopupRequest request = menu.Request(false);
  request.cursor = kCorner;
  menu.Apply(menu.input.Popup(request));
  menu.Log();
  menu.Up({4, 4});
  EXPECT_EQ(menu.Log(), Strings{"take capture"});
  // The next one does, whether it was pressed or not.
  menu.Up({4, 4});
  EXPECT_EQ(menu.Log()[5], "Clicked 0");
}

TEST(MenuClick, TheReleaseCountsOnceThePointerWasMovedOrPressed) {
  for (const bool move : {false, true}) {
    MenuUnderTest menu("ii");
    PopupRequest request = menu.Request(false);
    request.cursor = kCorner;
    menu.Apply(menu.input.Popup(request));
    if (move) {
      menu.Move({5, 0}, MouseButton::kLeft);
    } else {
      menu.Down({0, 0});
    }
    menu.Log();
    menu.Up({0, 0});
    EXPECT_EQ(menu.Log()[5], "Clicked 0") << move;
  }
}

TEST(MenuClick, AReleaseElsewhereThanThePressThatOpenedTheMenuCounts) {
  MenuUnderTest menu("ii");
  PopupRequest request = menu.Request(false);
  request.cursor = kCorner;
  menu.Apply(menu.input.Popup(request));
  menu.Log();
  menu.Up({5, 5});
  EXPECT_EQ(menu.Log()[5], "Clicked 0");
}

TEST(MenuClick, IsReportedWhateverTheOwnerDoesOnHideMenu) {
  struct Case {
    const char* name;
    std::function<void(MenuUnderTest&)> act;
    MenuState after;
  };
  const std::vector<Case> cases = {
      {"clears the items", [](MenuUnderTest& menu) { menu.items.Clear(); }, MenuState::Hidden},
      {"opens it", [](MenuUnderTest& menu) { menu.Popup(); }, MenuState::Docked},
      {"unloads it", [](MenuUnderTest& menu) { menu.Apply(menu.input.Unload()); }, MenuState::Hidden},
  };
  for (const Case& owner : cases) {
    SCOPED_TRACE(owner.name);
    MenuUnderTest menu("ii");
    menu.Open();
    menu.Down(menu.On(1));
    menu.Log();
    menu.others = [&](const std::string& effect) {
      if (effect != "HideMenu") return;
      menu.others = nullptr;
      owner.act(menu);
    };
    menu.Up(menu.On(1));
    const Strings log = menu.Log();
    EXPECT_EQ(std::count(log.begin(), log.end(), "Clicked 1"), 1);
    EXPECT_EQ(menu.input.State(), owner.after);
    EXPECT_EQ(menu.window, owner.after != MenuState::Hidden);
    EXPECT_EQ(menu.unloads, owner.after == MenuState::Hidden ? 1 : 0);
  }
}

TEST(MenuClick, AMenuOpenedOnClickedStaysOpen) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.others = [&](const std::string& effect) {
    if (effect == "Clicked 1") menu.Popup();
  };
  menu.Down(menu.On(1));
  menu.Up(menu.On(1));
  EXPECT_EQ(menu.input.State(), MenuState::Docked);
  EXPECT_TRUE(menu.captured);
  EXPECT_EQ(menu.unloads, 0);
}

TEST(MenuClick, AssistiveProgramsChooseItemsTheSameWay) {
  MenuUnderTest menu("i-di");
  menu.Apply(menu.input.DoDefaultAction(0));
  EXPECT_EQ(menu.Log(), Strings{});
  menu.Open();
  for (const int index : {1, 2, -1, 4}) menu.Apply(menu.input.DoDefaultAction(index));
  EXPECT_EQ(menu.Log(), Strings{});
  menu.Apply(menu.input.DoDefaultAction(3));
  EXPECT_EQ(menu.Log(), (Strings{"play 8", "release capture", "hide", "HideMenu", "Clicked 3"} + kUnloading));
}

// ---- Outside

TEST(MenuOutside, TheClickGoesOn) {
  struct Case {
    int button;
    bool shift;
    const char* posted;
  };
  const std::vector<Case> cases = {
      {MouseButton::kLeft, false, "post 513 with 1 at 160,50"},
      {MouseButton::kLeft, true, "post 513 with 5 at 160,50"},
      {MouseButton::kRight, false, "post 516 with 2 at 160,50"},
      {MouseButton::kRight, true, "post 516 with 6 at 160,50"},
      {MouseButton::kMiddle, false, "post 516 with 2 at 160,50"},
  };
  for (const Case& click : cases) {
    SCOPED_TRACE(click.posted);
    MenuUnderTest menu("ii");
    menu.Open();
    menu.Down(menu.kOutside, click.button, click.shift);
    EXPECT_EQ(menu.Log(), kLeavingDocked + Strings{click.posted} + kUnloading);
  }
}

TEST(MenuOutside, EveryEdgeCounts) {
  for (const Point at : {Point{-1, 20}, Point{73, 20}, Point{20, -1}, Point{20, 61}}) {
    MenuUnderTest menu("ii");
    menu.Open();
    menu.Down({std::clamp(at.x, 0, 72), std::clamp(at.y, 11, 60)});
    EXPECT_EQ(menu.input.State(), MenuState::Docked) << Said(at);
    menu.Down(at);
    EXPECT_EQ(menu.input.State(), MenuState::Hidden) << Said(at);
  }
}

TEST(MenuOutside, ATornOffMenuDoesNotCare) {
  MenuUnderTest menu("ii");
  menu.Float();
  menu.Down(menu.kOutside);
  EXPECT_EQ(menu.Log(), Strings{});
}

TEST(MenuOutside, AClickThatOpensTheMenuAgainTellsTheFormerEndFirst) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.others = [&](const std::string& effect) {
    if (effect == "pending events") {
      menu.others = nullptr;
      menu.Popup();
    }
  };
  menu.Down(menu.kOutside);
  EXPECT_EQ(menu.Log(),
            (Strings{"release capture", "hide", "post 513 with 1 at 160,50", "unowned", "stop timer",
                     "release parts", "pending events", "HideMenu", "load", "release capture", "start timer",
                     "unfold at 200,100 to 73,61", "play 9", "pending events", "take capture"}));
  EXPECT_EQ(menu.input.State(), MenuState::Docked);
}

TEST(MenuOutside, OpenedAgainWhenTheEndIsToldItIsNotDestroyed) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.others = [&](const std::string& effect) {
    if (effect == "HideMenu") menu.Popup();
  };
  menu.Down(menu.kOutside);
  EXPECT_EQ(menu.input.State(), MenuState::Docked);
  EXPECT_TRUE(menu.window);
  EXPECT_TRUE(menu.captured);
  EXPECT_EQ(menu.hideMenus, 1);
}

TEST(MenuOutside, OfTwoOpeningsTheLaterHolds) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.others = [&](const std::string& effect) {
    if (effect != "pending events" && effect != "HideMenu") return;
    if (effect == "HideMenu") menu.others = nullptr;
    menu.Popup(effect == "pending events");
  };
  menu.Down(menu.kOutside);
  const Strings log = menu.Log();
  EXPECT_EQ(std::count(log.begin(), log.end(), "take capture"), 1);
  EXPECT_FALSE(menu.input.Mode().allowDetach);
}

// ---- Tearing off

TEST(MenuTearOff, MakesAPaletteAndHandsItToTheSystem) {
  MenuUnderTest menu("i-i");
  menu.Open();
  menu.Move(menu.kBar);
  menu.Tick(12);
  menu.Log();
  menu.Down(menu.kBar);
  // 3 * 315 + 435 - 195 twips.
  EXPECT_EQ(menu.Log(),
            (Strings{"hide tip", "owned", "not topmost", "height 79", "paint all", "play ToolbarUndock",
                     "HideMenu", "stop timer", "release capture", "drag from 230,103"}));
  EXPECT_EQ(menu.input.State(), MenuState::Floating);
  EXPECT_EQ(menu.input.Mode(), (MenuMode{.allowDetach = true, .floating = true}));
  EXPECT_FALSE(menu.captured);
}

TEST(MenuTearOff, ATornOffMenuIsOnlyDragged) {
  MenuUnderTest menu("i-i");
  menu.Float();
  menu.Down({59, 10});
  EXPECT_EQ(menu.Log(), (Strings{"stop timer", "release capture", "drag from 259,110"}));
}

TEST(MenuTearOff, OnlyWhereTheBarCanBeHeld) {
  MenuUnderTest menu("ii");
  menu.Open();
  for (const Point at : {Point{0, 3}, Point{60, 3}, Point{30, 6}}) {
    menu.Down(at);
    EXPECT_EQ(menu.Log(), Strings{}) << Said(at);
  }
  menu.Down({1, 5});
  EXPECT_EQ(menu.input.State(), MenuState::Floating);
}

TEST(MenuTearOff, OnlyWithADragBar) {
  MenuUnderTest menu("ii");
  menu.Open(false);
  menu.Move(menu.kBar);
  menu.Down(menu.kBar);
  EXPECT_EQ(menu.input.State(), MenuState::Docked);
}

TEST(MenuTearOff, WithOtherButtonsOnlyWhenAllowed) {
  for (const int button : {MouseButton::kRight, MouseButton::kMiddle}) {
    MenuUnderTest menu("ii");
    menu.Open();
    menu.Down(menu.kBar, button);
    EXPECT_EQ(menu.Log(), Strings{});
    menu.input.AllowRightClick = true;
    menu.Down(menu.kBar, button);
    EXPECT_EQ(menu.input.State(), MenuState::Floating);
  }
}

TEST(MenuTearOff, IsNotDraggedAfterTheOwnerHasOpenedOrUnloadedIt) {
  for (const bool open : {false, true}) {
    MenuUnderTest menu("ii");
    menu.Open();
    menu.others = [&](const std::string& effect) {
      if (effect != "HideMenu") return;
      menu.others = nullptr;
      if (open) {
        menu.Popup();
      } else {
        menu.Apply(menu.input.Unload());
      }
    };
    menu.Down(menu.kBar);
    EXPECT_EQ(menu.Log().back(), open ? "take capture" : "destroy");
    EXPECT_EQ(menu.timer, open);
  }
}

// ---- Close box

TEST(MenuCloseBox, FollowsThePressAndClosesOnRelease) {
  MenuUnderTest menu("ii");
  menu.Float();
  menu.Move(menu.kCloseBox);
  menu.Log();
  menu.Down(menu.kCloseBox);
  EXPECT_EQ(menu.Log(), (Strings{"take capture", "close box in"}));
  EXPECT_TRUE(menu.input.CloseBoxPushed());
  menu.Move({50, 6}, MouseButton::kLeft);
  EXPECT_EQ(menu.Log(), Strings{"close box out"});
  menu.Move(menu.kCloseBox, MouseButton::kLeft);
  EXPECT_EQ(menu.Log(), Strings{"close box in"});
  menu.Up(menu.kCloseBox);
  EXPECT_EQ(menu.Log(),
            (Strings{"release capture", "close box out", "play ToolbarClose", "hide"} + kUnloading));
}

TEST(MenuCloseBox, IsPushedOnlyByAButtonThatActs) {
  MenuUnderTest menu("ii");
  menu.Float();
  menu.Move(menu.kCloseBox);
  menu.Move(menu.kCloseBox, MouseButton::kMiddle);
  EXPECT_FALSE(menu.input.CloseBoxPushed());
  menu.Down(menu.kCloseBox, MouseButton::kRight);
  EXPECT_FALSE(menu.input.CloseBoxPushed());
  menu.input.AllowRightClick = true;
  menu.Down(menu.kCloseBox, MouseButton::kRight);
  EXPECT_TRUE(menu.input.CloseBoxPushed());
  menu.Up(menu.kCloseBox, MouseButton::kRight);
  EXPECT_EQ(menu.input.State(), MenuState::Hidden);
}

TEST(MenuCloseBox, ReleasedBesideItTheMenuStays) {
  MenuUnderTest menu("ii");
  menu.Float();
  for (const Point at : {Point{59, 6}, Point{73, 6}, Point{66, -1}, Point{66, 15}, Point{66, 66}}) {
    menu.Down(menu.kCloseBox);
    menu.Log();
    menu.Up(at);
    EXPECT_EQ(menu.Log(), (Strings{"release capture", "close box out"})) << Said(at);
  }
}

TEST(MenuCloseBox, ComesOutWhenTheMouseIsLost) {
  MenuUnderTest menu("ii");
  menu.Float();
  menu.Down(menu.kCloseBox);
  menu.Log();
  menu.captured = false;
  menu.Apply(menu.input.CaptureLost());
  EXPECT_EQ(menu.Log(), Strings{"close box out"});
  EXPECT_EQ(menu.input.State(), MenuState::Floating);
}

// ---- Keys

TEST(MenuKeys, MoveTheHotItem) {
  struct Case {
    const char* name;
    int from;  ///< By the mouse.
    MenuKey key;
    int to;
  };
  // Items and what lies between them are all passed one by one.
  const std::vector<Case> cases = {
      {"down", 0, MenuKey::Down, 1},
      {"down from a separator", 1, MenuKey::Down, 2},
      {"down on the last", 3, MenuKey::Down, 3},
      {"up", 3, MenuKey::Up, 2},
      {"up from a disabled one", 2, MenuKey::Up, 1},
      {"up on the first", 0, MenuKey::Up, 0},
      {"down from nothing", MenuHot::kNothingYet, MenuKey::Down, 0},
      {"up from nothing", MenuHot::kNothingYet, MenuKey::Up, 0},
      {"down from no item", MenuHot::kNoItem, MenuKey::Down, 0},
      {"up from no item", MenuHot::kNoItem, MenuKey::Up, 0},
      {"down from the drag bar", MenuHot::kDragBar, MenuKey::Down, 0},
      {"up from the drag bar", MenuHot::kDragBar, MenuKey::Up, 0},
  };
  for (const Case& press : cases) {
    SCOPED_TRACE(press.name);
    MenuUnderTest menu("i-di");
    menu.Open();
    if (press.from >= 0) menu.Move(menu.On(press.from));
    if (press.from == MenuHot::kDragBar) menu.Move(menu.kBar);
    if (press.from == MenuHot::kNoItem) menu.Move(menu.kOutside);
    ASSERT_EQ(menu.input.HotItem(), press.from);
    menu.Log();
    menu.Apply(menu.input.KeyDown(press.key));
    EXPECT_EQ(menu.input.HotItem(), press.to);
    Strings expected;
    if (press.to != press.from) {
      if (press.from >= 0) expected.push_back("paint row " + std::to_string(press.from));
      if (press.from == MenuHot::kDragBar) expected.emplace_back("paint drag bar");
      expected.push_back("paint row " + std::to_string(press.to));
      expected.push_back("Selected " + std::to_string(press.to));
    }
    EXPECT_EQ(menu.Log(), expected);
  }
}

TEST(MenuKeys, WithoutItemsDoNothing) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.items.Clear();
  menu.Apply(menu.input.KeyDown(MenuKey::Down));
  menu.Apply(menu.input.KeyDown(MenuKey::Up));
  EXPECT_EQ(menu.Log(), Strings{});
}

TEST(MenuKeys, EscapeClosesADockedMenu) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.Apply(menu.input.KeyDown(MenuKey::Escape));
  EXPECT_EQ(menu.Log(), kLeavingDocked + kUnloading);
}

TEST(MenuKeys, EscapeLeavesATornOffMenu) {
  MenuUnderTest menu("ii");
  menu.Float();
  menu.Apply(menu.input.KeyDown(MenuKey::Escape));
  EXPECT_EQ(menu.Log(), Strings{});
  menu.Apply(menu.input.KeyDown(MenuKey::Down));
  EXPECT_EQ(menu.Log().back(), "Selected 0");
}

TEST(MenuKeys, OtherKeysDoNothing) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.Move(menu.On(0));
  menu.Log();
  for (std::uint32_t code = 0; code < 256; ++code) {
    if (code != 0x1B && code != 0x26 && code != 0x28)
      menu.Apply(menu.input.KeyDown(static_cast<MenuKey>(code)));
  }
  EXPECT_EQ(menu.Log(), Strings{});
}

TEST(MenuKeys, OfAClosedMenuDoNothing) {
  MenuUnderTest menu("ii");
  menu.input.Load();
  menu.Apply(menu.input.KeyDown(MenuKey::Down));
  menu.Apply(menu.input.KeyDown(MenuKey::Escape));
  EXPECT_EQ(menu.Log(), Strings{});
}

// ---- Tip

TEST(MenuTip, ComesUpOnceInAVisitOfTheDragBar) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.Move(menu.kBar);
  menu.Log();
  menu.Tick(11);
  EXPECT_EQ(menu.Log(), Strings{});
  menu.Tick();
  EXPECT_EQ(menu.Log(), Strings{"tip: Drag to make this menu float"});
  menu.Tick(100);
  EXPECT_EQ(menu.Log(), Strings{});
  menu.Move(menu.On(0));
  menu.Log();
  menu.Tick();
  EXPECT_EQ(menu.Log(), Strings{"hide tip"});
  menu.Tick();
  EXPECT_EQ(menu.Log(), Strings{});
  menu.Move(menu.kBar);
  menu.Log();
  menu.Tick(12);
  EXPECT_EQ(menu.Log(), Strings{"tip: Drag to make this menu float"});
}

TEST(MenuTip, CountsFromTheBeginningOfTheVisit) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.Move(menu.kBar);
  menu.Tick(8);
  menu.Move(menu.On(0));
  menu.Tick();
  menu.Move(menu.kBar);
  menu.Log();
  menu.Tick(11);
  EXPECT_EQ(menu.Log(), Strings{});
}

TEST(MenuTip, CountsFromTheBeginningInAMenuOpenedAnew) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.Move(menu.kBar);
  menu.Tick(8);
  menu.Popup();
  menu.Move(menu.kBar);
  menu.Log();
  menu.Tick(11);
  EXPECT_EQ(menu.Log(), Strings{});
}

TEST(MenuTip, IsNoneOnATornOffMenu) {
  MenuUnderTest menu("ii");
  menu.Float();
  menu.Move(menu.kBar);
  menu.Tick(20);
  EXPECT_EQ(menu.Log(), Strings{});
}

TEST(MenuTip, GoesWithTheMenu) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.Move(menu.kBar);
  menu.Tick(12);
  menu.Log();
  menu.Apply(menu.input.KeyDown(MenuKey::Escape));
  EXPECT_EQ(menu.Log(), (Strings{"release capture", "hide tip", "hide"} + kUnloading));
}

// ---- Closing

TEST(MenuClose, ADockedMenuClosesWhenTheUserTurnsElsewhere) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.Apply(menu.input.Deactivated());
  EXPECT_EQ(menu.Log(), kLeavingDocked + kUnloading);
  menu.Apply(menu.input.Deactivated());
  EXPECT_EQ(menu.Log(), Strings{});
}

TEST(MenuClose, ADockedMenuClosesWhenItLosesTheMouse) {
  MenuUnderTest menu("ii");
  menu.Open();
  menu.captured = false;
  menu.Apply(menu.input.CaptureLost());
  EXPECT_EQ(menu.Log(), Strings{"hide"} + kUnloading);
}

TEST(MenuClose, LosingTheMouseThatItLetsGoItselfIsNoLoss) {
  MenuUnderTest menu("ii");
  menu.Apply(menu.input.CaptureLost());
  menu.Float();
  menu.Apply(menu.input.CaptureLost());
  EXPECT_EQ(menu.Log(), Strings{});
  EXPECT_EQ(menu.input.State(), MenuState::Floating);
}

TEST(MenuClose, AMenuThatHasNotTakenTheMouseYetCannotLoseIt) {
  MenuUnderTest menu("ii");
  menu.others = [&](const std::string& effect) {
    if (effect == "pending events") menu.Apply(menu.input.CaptureLost());
  };
  menu.Popup();
  EXPECT_EQ(menu.input.State(), MenuState::Docked);
  EXPECT_TRUE(menu.captured);
}

TEST(MenuClose, ATornOffMenuStaysWhenTheUserTurnsElsewhere) {
  MenuUnderTest menu("ii");
  menu.Float();
  menu.Apply(menu.input.Deactivated());
  EXPECT_EQ(menu.Log(), Strings{});
}

TEST(MenuClose, OnlyTheProgramAndTheEndOfWindowsAreObeyed) {
  const std::vector<std::pair<CloseReason, bool>> cases = {
      {CloseReason::ControlMenu, false}, {CloseReason::Code, true},        {CloseReason::WindowsEnds, true},
      {CloseReason::TaskManager, false}, {CloseReason::ParentForm, false},
  };
  for (const auto& [reason, obeyed] : cases) {
    SCOPED_TRACE(static_cast<int>(reason));
    MenuUnderTest docked("ii");
    docked.Open();
    docked.Apply(docked.input.QueryUnload(reason));
    EXPECT_EQ(docked.Log(), obeyed ? kLeavingDocked + kUnloading : Strings{});
    MenuUnderTest floating("ii");
    floating.Float();
    floating.Apply(floating.input.QueryUnload(reason));
    EXPECT_EQ(floating.Log(), obeyed ? Strings{"hide"} + kUnloading : Strings{});
  }
}

TEST(MenuClose, UnloadingNeedsAForm) {
  MenuUnderTest menu("ii");
  menu.Apply(menu.input.Unload());
  EXPECT_EQ(menu.Log(), Strings{});
  menu.input.Load();
  menu.window = menu.parts = true;
  menu.Apply(menu.input.Unload());
  EXPECT_EQ(menu.Log(), kUnloading);
  menu.Apply(menu.input.Unload());
  EXPECT_EQ(menu.Log(), Strings{});
}

TEST(MenuClose, UnloadedAgainInItsLastEventsItIsDestroyedOnce) {
  MenuUnderTest menu("ii");
  menu.Open();
  bool reopened = false;
  menu.others = [&](const std::string& effect) {
    if (effect == "pending events" && !std::exchange(reopened, true)) {
      menu.Popup();
      menu.Apply(menu.input.Unload());
    } else {
      menu.Apply(menu.input.Unload());
    }
  };
  menu.Apply(menu.input.Deactivated());
  EXPECT_FALSE(menu.window);
  EXPECT_EQ(menu.hideMenus, menu.unloads);
}

TEST(MenuClose, TheItemsOutliveTheForm) {
  MenuUnderTest menu("i-i");
  menu.Open();
  menu.Apply(menu.input.KeyDown(MenuKey::Escape));
  menu.Log();
  menu.Popup();
  EXPECT_EQ(menu.Log()[3], "unfold at 200,100 to 73,67");
}

}  // namespace
}  // namespace snip::test
