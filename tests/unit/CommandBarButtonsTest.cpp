#include "ui/commandbar/CommandBarButtons.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "platform/Himetric.h"
#include "tests/unit/TestBar.h"

namespace snip::test {
namespace {

using Types = std::vector<ButtonType>;
using Strings = std::vector<std::string>;

constexpr auto kPush = ButtonType::Push;
constexpr auto kMenu = ButtonType::Menu;
constexpr auto kToggle = ButtonType::Toggle;
constexpr auto kDropDown = ButtonType::DropDown;
constexpr auto kSeparator = ButtonType::Separator;
constexpr auto kPictureOnly = DisplayType::Picture;
constexpr auto kCaptionOnly = DisplayType::Caption;
constexpr auto kBoth = DisplayType::PictureAndCaption;

constexpr BarChange kNothing{};
constexpr BarChange kRefresh{.refresh = true};

BarChange Redraw(int index) {
  return {.redrawButton = index};
}

CommandBarButtons EmptyBar() {
  return CommandBarButtons(WesternLetterCase());
}

CommandBarButtons BarOfCaptions(const Strings& captions) {
  CommandBarButtons buttons = EmptyBar();
  for (const std::string& caption : captions) {
    buttons.Add({.Caption = caption, .DisplayType = kCaptionOnly}, Metrics());
  }
  return buttons;
}

Strings Captions(const CommandBarButtons& buttons) {
  Strings captions;
  for (const BarButton& button : buttons.All()) captions.push_back(button.Caption);
  return captions;
}

/// Right edges less left edges.
std::vector<int> Spans(const CommandBarButtons& buttons) {
  std::vector<int> spans;
  for (const BarButton& button : buttons.All()) spans.push_back(button.Right - button.Left);
  return spans;
}

int SpanOf(ButtonType type, DisplayType display, const std::string& caption, int scaleHeight) {
  CommandBarButtons buttons = EmptyBar();
  buttons.Add({.Caption = caption, .ButtonType = type, .DisplayType = display}, Metrics(scaleHeight));
  return Spans(buttons).front();
}

TEST(CommandBarLayoutTest, TheWidthOfAButtonFollowsFromItsTypesItsTextAndTheHeightOfTheBar) {
  struct Case {
    ButtonType type;
    DisplayType display;
    int spanAt26, spanAt40;
  };
  // "&Copy" is measured as "Copy": 28 pixels.
  const std::vector<Case> cases = {
      {kPush, kPictureOnly, 21, 35},
      {kPush, kCaptionOnly, 34, 34},
      {kPush, kBoth, 51, 65},
      {kMenu, kPictureOnly, 21, 35},
      {kMenu, kCaptionOnly, 34, 34},
      {kMenu, kBoth, 51, 65},
      {kToggle, kPictureOnly, 21, 35},
      {kToggle, kCaptionOnly, 34, 34},
      {kToggle, kBoth, 51, 65},
      {kDropDown, kPictureOnly, 29, 43},
      {kDropDown, kCaptionOnly, 42, 42},
      {kDropDown, kBoth, 59, 73},
      {kSeparator, kPictureOnly, 5, 5},
      {kSeparator, kCaptionOnly, 5, 5},
      {kSeparator, kBoth, 5, 5},
      {kPush, DisplayType{7}, 51, 65},
      {kPush, DisplayType{-1}, 51, 65},
      {ButtonType{9}, kPictureOnly, 21, 35},
      {kDropDown, DisplayType{3}, 59, 73},
      {ButtonType{-3}, kCaptionOnly, 34, 34},
  };
  for (const auto& [type, display, spanAt26, spanAt40] : cases) {
    SCOPED_TRACE(testing::Message() << "type " << static_cast<int>(type) << ", display "
                                    << static_cast<int>(display));
    EXPECT_EQ(SpanOf(type, display, "&Copy", 26), spanAt26);
    EXPECT_EQ(SpanOf(type, display, "&Copy", 40), spanAt40);
  }
}

TEST(CommandBarLayoutTest, OnlyTheFirstAmpersandIsNotMeasured) {
  EXPECT_EQ(SpanOf(kPush, kCaptionOnly, "Copy", 26), 34);
  EXPECT_EQ(SpanOf(kPush, kCaptionOnly, "C&opy", 26), 34);
  EXPECT_EQ(SpanOf(kPush, kCaptionOnly, "Copy&", 26), 34);
  EXPECT_EQ(SpanOf(kPush, kCaptionOnly, "&Co&py", 26), 41);
  EXPECT_EQ(SpanOf(kPush, kCaptionOnly, "Co&&py", 26), 41);
  EXPECT_EQ(SpanOf(kPush, kCaptionOnly, "&", 26), 6);
  EXPECT_EQ(SpanOf(kPush, kCaptionOnly, "", 26), 6);
}

TEST(CommandBarLayoutTest, AButtonWithoutCaptionIsNotMeasured) {
  CommandBarButtons buttons = EmptyBar();
  BarMetrics metrics = Metrics();
  int measured = 0;
  metrics.textWidth = [&](std::string_view) { return ++measured; };
  buttons.Add({.Caption = "x", .DisplayType = kPictureOnly}, metrics);
  buttons.Add({.Caption = "x", .ButtonType = kSeparator}, metrics);
  EXPECT_EQ(measured, 0);
  buttons.Add({.Caption = "x", .DisplayType = kBoth}, metrics);
  EXPECT_EQ(measured, 1);
}

TEST(CommandBarLayoutTest, ButtonsStandSideBySideBehindTheGrip) {
  for (const bool dockable : {false, true}) {
    for (const int height : {0, 5, 22, 26, 27, 100}) {
      SCOPED_TRACE(testing::Message() << (dockable ? "dockable" : "fixed") << ", height " << height);
      const BarMetrics metrics = Metrics(height, dockable);
      CommandBarButtons buttons = EmptyBar();
      for (const auto type : {kPush, kSeparator, kDropDown, kToggle, kMenu}) {
        for (const auto display : {kPictureOnly, kCaptionOnly, kBoth}) {
          buttons.Add({.Caption = "Ab", .ButtonType = type, .DisplayType = display}, metrics);
        }
      }
      ASSERT_EQ(buttons.Count(), 15);
      int left = dockable ? 10 : 3;
      for (const BarButton& button : buttons.All()) {
        EXPECT_EQ(button.Left, left);
        EXPECT_EQ(button.Top, 2);
        EXPECT_EQ(button.Bottom, height - 3);
        left = button.Right + 1;
      }
    }
  }
}

TEST(CommandBarLayoutTest, ADockableBarHugsItsButtons) {
  const BarMetrics dockable = Metrics(26, true);
  CommandBarButtons buttons = EmptyBar();
  const NewButton button{};
  EXPECT_EQ(buttons.Add(button, dockable).ownWidth, 10 + 21 + 3);
  EXPECT_EQ(buttons.Add(button, dockable).ownWidth, 10 + 21 + 1 + 21 + 3);
  EXPECT_EQ(buttons.SetCaption(0, "Long", dockable).ownWidth, 56);
  EXPECT_EQ(buttons.Move(0, 1, dockable).ownWidth, 56);
  EXPECT_EQ(buttons.LayOut(dockable).ownWidth, 56);
  EXPECT_EQ(buttons.LayOut(Metrics(30, true)).ownWidth, 10 + 25 + 1 + 25 + 3);
  EXPECT_EQ(buttons.Remove(1, dockable).ownWidth, 34);
  EXPECT_EQ(buttons.Remove(0, dockable).ownWidth, std::nullopt);  // none left to hug

  EXPECT_EQ(buttons.Add(button, Metrics()).ownWidth, std::nullopt);
  EXPECT_EQ(buttons.LayOut(Metrics()).ownWidth, std::nullopt);
}

TEST(CommandBarLayoutTest, BecomingDockableMovesAllButtonsBehindTheGrip) {
  CommandBarButtons buttons = BarOf({kPush, kSeparator, kToggle});
  const BarChange change = buttons.LayOut(Metrics(26, true));
  EXPECT_TRUE(change.refresh);
  EXPECT_EQ(change.ownWidth, 10 + 22 + 6 + 21 + 3);
  EXPECT_EQ(buttons.Find(0)->Left, 10);
  EXPECT_EQ(buttons.Find(2)->Left, 38);
  EXPECT_EQ(buttons.LayOut(Metrics()), kRefresh);
  EXPECT_EQ(buttons.Find(0)->Left, 3);
}

TEST(CommandBarLayoutTest, AnotherHeightChangesBottomsAndPicturePartsOnly) {
  CommandBarButtons buttons = BarOf({kPush, kDropDown});
  buttons.SetState(1, 2);
  buttons.SetGrayed(0, true);
  buttons.LayOut(Metrics(40));
  EXPECT_EQ(Spans(buttons), (std::vector<int>{35, 43}));
  EXPECT_EQ(buttons.Find(0)->Top, 2);
  EXPECT_EQ(buttons.Find(0)->Bottom, 37);
  EXPECT_EQ(buttons.State(1), 2);
  EXPECT_TRUE(buttons.Grayed(0));
}

TEST(CommandBarLayoutTest, CoordinatesStayAtTheEndOfTheirRange) {
  CommandBarButtons buttons = EmptyBar();
  BarMetrics huge = Metrics(26);
  huge.textWidth = [](std::string_view) { return std::numeric_limits<int>::max(); };
  for (int i = 0; i < 2; ++i) {
    buttons.Add({.Caption = "x", .DisplayType = kBoth}, huge);
  }
  EXPECT_EQ(buttons.Find(0)->Left, 3);
  EXPECT_EQ(buttons.Find(0)->Right, 32767);
  EXPECT_EQ(buttons.Find(1)->Left, 32767);
  EXPECT_EQ(buttons.Find(1)->Right, 32767);

  for (const auto& [height, bottom] : {std::pair{std::numeric_limits<int>::max(), 32767},
                                       std::pair{std::numeric_limits<int>::min(), -32768}}) {
    buttons.LayOut(Metrics(height));
    EXPECT_EQ(buttons.Find(0)->Bottom, bottom);
    EXPECT_EQ(buttons.Find(0)->Top, 2);
    EXPECT_EQ(buttons.Find(0)->Right, bottom);
  }
  EXPECT_EQ(buttons.Find(0)->Area(), (Rect{3, 2, 0, 0}));  // never a negative size
}

TEST(CommandBarLayoutTest, AnAreaHoldsItsRightAndBottomEdge) {
  const CommandBarButtons buttons = BarOf({kPush});
  EXPECT_EQ(buttons.Find(0)->Area(), (Rect{3, 2, 22, 22}));
}

TEST(CommandBarButtonsTest, AnAddedButtonHoldsWhatItWasGiven) {
  CommandBarButtons buttons = BarOf({kPush, kPush});
  const PictureRef picture = SomePicture();
  EXPECT_EQ(buttons.Add({.Caption = "&Keep",
                         .Picture = picture,
                         .PictureSize = {16, 15},
                         .ButtonType = kToggle,
                         .DisplayType = kBoth,
                         .GrayBtn = true},
                        Metrics()),
            Redraw(2));
  const BarButton& button = *buttons.Find(2);
  EXPECT_EQ(button.Index, 2);
  EXPECT_EQ(button.AccessKey, 'k');
  EXPECT_EQ(button.Picture, picture);
  EXPECT_EQ(button.PicWidth, 16);
  EXPECT_EQ(button.PicHeight, 15);
  EXPECT_EQ(button.Caption, "&Keep");
  EXPECT_EQ(button.ButtonType, kToggle);
  EXPECT_EQ(button.DisplayType, kBoth);
  EXPECT_EQ(button.State, 0);
  EXPECT_FALSE(button.Enabled);
  EXPECT_TRUE(buttons.Find(1)->Enabled);
}

TEST(CommandBarButtonsTest, PictureSizesAreThoseOfGivenPictures) {
  CommandBarButtons buttons = EmptyBar();
  buttons.Add({.Picture = nullptr, .PictureSize = {16, 16}}, Metrics());
  EXPECT_EQ(buttons.Find(0)->PicWidth, 0);
  EXPECT_EQ(buttons.Find(0)->PicHeight, 0);
  buttons.Add({.Picture = SomePicture(), .PictureSize = {40000, -40000}}, Metrics());
  EXPECT_EQ(buttons.Find(1)->PicWidth, 32767);
  EXPECT_EQ(buttons.Find(1)->PicHeight, -32768);
}

TEST(CommandBarButtonsTest, TheAccessKeyIsTheLowerCaseCharacterBehindTheFirstAmpersand) {
  const std::vector<std::pair<std::string, int>> cases = {
      {"&Copy", 'c'},
      {"C&opy", 'o'},
      {"Copy", 0},
      {"", 0},
      {"Copy&", 0},
      {"&", 0},
      {"S&&ave &As", '&'},
      {"&1 more", '1'},
      {"&\xD6"
       "ffnen",
       0xF6},
      {"a & b", ' '},
      {"&a&b", 'a'},
  };
  for (const auto& [caption, key] : cases) {
    SCOPED_TRACE(caption);
    EXPECT_EQ(BarOfCaptions({caption}).Find(0)->AccessKey, key);
  }
}

TEST(CommandBarButtonsTest, TheAccessKeyOutlivesItsCaption) {
  CommandBarButtons buttons = BarOfCaptions({"&Copy", "Paste"});
  EXPECT_EQ(buttons.SetCaption(0, "&Delete", Metrics()), kRefresh);
  EXPECT_EQ(buttons.Caption(0), "&Delete");
  EXPECT_EQ(buttons.Find(0)->AccessKey, 'c');
  EXPECT_EQ(Spans(buttons).front(), 6 * 7 + 6);  // laid out by the new caption all the same
  EXPECT_EQ(buttons.IndexFromAccessKey('c'), 0);
  EXPECT_EQ(buttons.IndexFromAccessKey('d'), -1);

  buttons.SetCaption(1, "&Paste", Metrics());
  EXPECT_EQ(buttons.Find(1)->AccessKey, 0);
  buttons.SetCaption(0, "Copy", Metrics());
  EXPECT_EQ(buttons.Find(0)->AccessKey, 'c');
}

TEST(CommandBarButtonsTest, AccessKeysAreComparedExactlyFromTheFirstButtonOn) {
  const CommandBarButtons buttons = BarOfCaptions({"None", "&Xy", "&Copy", "&cut"});
  EXPECT_EQ(buttons.IndexFromAccessKey('c'), 2);
  EXPECT_EQ(buttons.IndexFromAccessKey('C'), -1);
  EXPECT_EQ(buttons.IndexFromAccessKey('x'), 1);
  EXPECT_EQ(buttons.IndexFromAccessKey('n'), -1);
  EXPECT_EQ(buttons.IndexFromAccessKey(0), -1);  // not the button that has no key
}

TEST(CommandBarButtonsTest, AKeyFindsTheWholeCaptionInAnyCase) {
  const CommandBarButtons buttons = BarOfCaptions({"Cop", "&Copy", "&cOPY", "", "\xD6l"});
  EXPECT_EQ(buttons.IndexFromKey("&Copy"), 1);
  EXPECT_EQ(buttons.IndexFromKey("&COPY"), 1);
  EXPECT_EQ(buttons.IndexFromKey("Copy"), -1);
  EXPECT_EQ(buttons.IndexFromKey(""), 3);
  EXPECT_EQ(buttons.IndexFromKey("\xF6L"), 4);
  EXPECT_EQ(EmptyBar().IndexFromKey(""), -1);
}

TEST(CommandBarButtonsTest, RemovingAButtonClosesTheGap) {
  const Strings all = {"a", "bb", "ccc", "dddd"};
  for (int removed = 0; removed < 4; ++removed) {
    SCOPED_TRACE(removed);
    CommandBarButtons buttons = BarOfCaptions(all);
    EXPECT_EQ(buttons.Remove(removed, Metrics()), kRefresh);
    Strings left = all;
    left.erase(left.begin() + removed);
    EXPECT_EQ(Captions(buttons), left);
    EXPECT_EQ(Spans(buttons), Spans(BarOfCaptions(left)));
    EXPECT_EQ(buttons.Find(0)->Left, 3);
    EXPECT_EQ(buttons.Find(1)->Left, buttons.Find(0)->Right + 1);
    EXPECT_EQ(buttons.Find(2)->Left, buttons.Find(1)->Right + 1);
    EXPECT_EQ(buttons.Find(2)->Index, removed == 3 ? 2 : 3);  // as it was when it was added
  }
}

TEST(CommandBarButtonsTest, MovingAButtonShiftsThoseBetween) {
  struct Case {
    int from, to;
    std::string order;
  };
  for (const auto& [from, to, order] : std::vector<Case>{{0, 0, "abcd"},
                                                         {0, 1, "bacd"},
                                                         {0, 3, "bcda"},
                                                         {1, 2, "acbd"},
                                                         {3, 0, "dabc"},
                                                         {2, 0, "cabd"},
                                                         {3, 3, "abcd"},
                                                         {2, 1, "acbd"},
                                                         {1, 3, "acdb"}}) {
    SCOPED_TRACE(testing::Message() << from << " to " << to);
    CommandBarButtons buttons = BarOfCaptions({"a", "b", "c", "d"});
    const ButtonId moved = buttons.IdOf(from);
    EXPECT_EQ(buttons.Move(from, to, Metrics()), kNothing);  // not even a refresh
    std::string found;
    for (const std::string& caption : Captions(buttons)) found += caption;
    EXPECT_EQ(found, order);
    EXPECT_EQ(buttons.IndexOf(moved), to);
  }
}

TEST(CommandBarButtonsTest, MovedButtonsAreLaidOutAgain) {
  CommandBarButtons buttons = BarOfCaptions({"a", "bbb"});
  buttons.Move(1, 0, Metrics());
  EXPECT_EQ(buttons.Find(0)->Left, 3);
  EXPECT_EQ(buttons.Find(0)->Right, 30);
  EXPECT_EQ(buttons.Find(1)->Left, 31);
  EXPECT_EQ(buttons.Find(0)->Index, 1);
}

TEST(CommandBarButtonsTest, GrayingRedrawsOnAChangeOnly) {
  CommandBarButtons buttons = BarOf({kPush, kPush});
  EXPECT_EQ(buttons.SetGrayed(1, false), kNothing);
  EXPECT_EQ(buttons.SetGrayed(1, true), Redraw(1));
  EXPECT_TRUE(buttons.Grayed(1));
  EXPECT_FALSE(buttons.Grayed(0));
  EXPECT_EQ(buttons.SetGrayed(1, true), kNothing);
  EXPECT_EQ(buttons.SetGrayed(1, false), Redraw(1));
  EXPECT_FALSE(buttons.Grayed(1));
}

TEST(CommandBarButtonsTest, SettingTheStateAlwaysRedraws) {
  CommandBarButtons buttons = BarOf({kToggle});
  EXPECT_EQ(buttons.SetState(0, 1), Redraw(0));
  EXPECT_EQ(buttons.State(0), 1);
  EXPECT_EQ(buttons.SetState(0, 1), Redraw(0));
  buttons.SetState(0, -70000);
  EXPECT_EQ(buttons.State(0), -70000);
}

TEST(CommandBarButtonsTest, AChangedPictureKeepsPlaceAndPictureSize) {
  CommandBarButtons buttons = BarOf({kPush});
  const PictureRef picture = SomePicture();
  const PictureRef before = buttons.Picture(0);
  buttons.SetPicture(0, picture);
  EXPECT_EQ(buttons.Picture(0), picture);
  EXPECT_NE(buttons.Picture(0), before);
  EXPECT_EQ(buttons.Find(0)->PicWidth, 16);
  buttons.SetPicture(0, nullptr);
  EXPECT_EQ(buttons.Picture(0), nullptr);
  buttons.LayOut(Metrics());
  EXPECT_EQ(buttons.Find(0)->PicWidth, 16);
}

TEST(CommandBarButtonsTest, PlacesThatDoNotExistAreAnsweredEmptyAndLeaveAllAsItIs) {
  for (const int count : {0, 2}) {
    for (const int index : {-32768, -1, count, count + 1, 32767, 40000}) {
      SCOPED_TRACE(testing::Message() << index << " of " << count);
      CommandBarButtons buttons = BarOf(Types(static_cast<std::size_t>(count), kPush));
      EXPECT_FALSE(buttons.Grayed(index));
      EXPECT_EQ(buttons.State(index), 0);
      EXPECT_EQ(buttons.Caption(index), "");
      EXPECT_EQ(buttons.Picture(index), nullptr);
      EXPECT_EQ(buttons.GetMenuPos(index), std::nullopt);
      EXPECT_EQ(buttons.Find(index), nullptr);
      EXPECT_EQ(buttons.IdOf(index), ButtonId::None);

      EXPECT_EQ(buttons.SetGrayed(index, true), kNothing);
      EXPECT_EQ(buttons.SetState(index, 1), kNothing);
      EXPECT_EQ(buttons.SetCaption(index, "x", Metrics()), kNothing);
      buttons.SetPicture(index, SomePicture());
      EXPECT_EQ(buttons.Remove(index, Metrics()), kNothing);
      EXPECT_EQ(buttons.Move(index, 0, Metrics()), kNothing);
      EXPECT_EQ(buttons.Move(0, index, Metrics()), kNothing);
      EXPECT_EQ(buttons.Count(), count);
      for (const BarButton& button : buttons.All()) {
        EXPECT_TRUE(button.Enabled);
        EXPECT_EQ(button.State, 0);
        EXPECT_EQ(button.Caption, "");
      }
    }
  }
}

TEST(CommandBarButtonsTest, TheNextButtonStartsBehindTheLastInTwips) {
  const TwipsPerPixel at96 = TwipsPerPixel::FromDpi(96, 96);
  const TwipsPerPixel at144x96 = TwipsPerPixel::FromDpi(144, 96);
  EXPECT_EQ(EmptyBar().NextButtonX(Metrics(), at96), 45);
  EXPECT_EQ(EmptyBar().NextButtonX(Metrics(26, true), at96), 150);
  EXPECT_EQ(EmptyBar().NextButtonX(Metrics(), at144x96), 30);
  EXPECT_EQ(BarOf({kPush, kPush}).NextButtonX(Metrics(), at96), (3 + 44) * 15);
  EXPECT_EQ(BarOf({kPush, kPush}).NextButtonX(Metrics(), at144x96), (3 + 44) * 10);
  EXPECT_EQ(BarOf({kPush}).NextButtonX(Metrics(26, true), at96), 25 * 15);  // where it lies, it lies
}

TEST(CommandBarButtonsTest, AMenuOpensBelowItsButton) {
  const CommandBarButtons buttons = BarOf({kPush, kDropDown});
  EXPECT_EQ(buttons.GetMenuPos(0), (Point{3, 25}));
  EXPECT_EQ(buttons.GetMenuPos(1), (Point{25, 25}));
}

TEST(CommandBarButtonsTest, AFullBarTakesNoMore) {
  CommandBarButtons buttons = EmptyBar();
  const NewButton separator{.ButtonType = kSeparator};
  for (int i = 0; i < 32768; ++i) buttons.Add(separator, Metrics());
  EXPECT_EQ(buttons.Count(), 32768);
  EXPECT_EQ(buttons.Find(32767)->Index, 32767);
  EXPECT_EQ(buttons.Add(separator, Metrics()), kNothing);
  EXPECT_EQ(buttons.Count(), 32768);
}

TEST(CommandBarButtonsTest, IdentitiesFollowTheirButtonsAndAreNeverUsedAgain) {
  CommandBarButtons buttons = BarOfCaptions({"a", "b", "c"});
  const ButtonId a = buttons.IdOf(0);
  const ButtonId c = buttons.IdOf(2);
  buttons.Remove(0, Metrics());
  EXPECT_EQ(buttons.IndexOf(a), -1);
  EXPECT_EQ(buttons.IndexOf(c), 1);
  EXPECT_EQ(buttons.IndexOf(ButtonId::None), -1);
  buttons.Remove(1, Metrics());
  buttons.Add({.Caption = "d"}, Metrics());
  EXPECT_NE(buttons.IdOf(1), c);
  EXPECT_NE(buttons.IdOf(1), a);
}

TEST(CommandBarHitTest, AButtonIsHitUpToItsEdges) {
  CommandBarButtons buttons = BarOf({kPush, kToggle});  // columns 3 to 24 and 25 to 46, rows 2 to 23
  const std::vector<std::pair<Point, int>> cases = {
      {{3, 2}, 0},    {{24, 23}, 0}, {{25, 23}, 1},  {{46, 2}, 1},   {{2, 10}, -1},
      {{47, 10}, -1}, {{10, 1}, -1}, {{10, 24}, -1}, {{-1, -1}, -1}, {{10, 100000}, -1},
  };
  for (const auto& [point, index] : cases) {
    EXPECT_EQ(buttons.BtnFromPoint(point.x, point.y), index) << point.x << ", " << point.y;
  }
}

TEST(CommandBarHitTest, SeparatorsAreNotHitAndDisabledButtonsAre) {
  CommandBarButtons buttons = BarOf({kSeparator, kPush});
  EXPECT_EQ(buttons.BtnFromPoint(3, 10), -1);
  EXPECT_EQ(buttons.BtnFromPoint(8, 10), -1);
  EXPECT_EQ(buttons.BtnFromPoint(9, 10), 1);
  buttons.SetGrayed(1, true);
  EXPECT_EQ(buttons.BtnFromPoint(9, 10), 1);
}

TEST(CommandBarHitTest, WhatASeparatorLiesOverIsFoundBehindIt) {
  CommandBarButtons buttons = EmptyBar();
  BarMetrics narrow = Metrics(26);
  narrow.textWidth = [](std::string_view) { return -20; };  // so that the next button starts further left
  buttons.Add({.ButtonType = kSeparator}, narrow);
  buttons.Add({.Caption = "x", .DisplayType = kCaptionOnly}, narrow);
  buttons.Add({}, narrow);
  EXPECT_EQ(buttons.BtnFromPoint(5, 10), 2);
}

TEST(CommandBarHitTest, ADropDownButtonKeepsThePartThatWasHit) {
  CommandBarButtons buttons = BarOf({kDropDown, kPush});  // the first takes the columns 3 to 32
  const std::vector<std::pair<int, int>> cases = {{3, 0}, {32, 2}, {23, 0}, {24, 2}, {22, 0}};
  for (const auto& [x, state] : cases) {
    SCOPED_TRACE(x);
    EXPECT_EQ(buttons.BtnFromPoint(x, 10), 0);
    EXPECT_EQ(buttons.State(0), state);
  }
  buttons.BtnFromPoint(24, 10);
  EXPECT_EQ(buttons.BtnFromPoint(10, 100), -1);
  EXPECT_EQ(buttons.BtnFromPoint(40, 10), 1);
  EXPECT_EQ(buttons.State(0), 2);  // not hit, not touched
}

TEST(CommandBarHitTest, OnlyDropDownButtonsHaveParts) {
  for (const auto type : {kPush, kMenu, kToggle}) {
    CommandBarButtons buttons = BarOf({type});
    for (const int state : {0, 1, 2}) {
      buttons.SetState(0, state);
      EXPECT_EQ(buttons.BtnFromPoint(24, 10), 0);
      EXPECT_EQ(buttons.State(0), state);
    }
    EXPECT_EQ(buttons.Find(0)->PartAt(24), ButtonPart::Push);
  }
}

TEST(CommandBarHitTest, ABarTooLowForButtonsHasNoneToHit) {
  CommandBarButtons buttons = BarOf({kPush, kPush});
  buttons.LayOut(Metrics(4));
  for (int y = -2; y < 6; ++y) EXPECT_EQ(buttons.BtnFromPoint(3, y), -1);
}

TEST(CaptionTest, WhatIsMeasuredLacksTheFirstAmpersand) {
  EXPECT_EQ(MeasuringText("&Copy"), "Copy");
  EXPECT_EQ(MeasuringText("Copy"), "Copy");
  EXPECT_EQ(MeasuringText("a && b &c"), "a & b &c");
  EXPECT_EQ(MeasuringText("&"), "");
  EXPECT_EQ(MeasuringText(""), "");
}

TEST(CaptionTest, ANameIsReadAsItIsShown) {
  EXPECT_EQ(DisplayName("&Copy"), "Copy");
  EXPECT_EQ(DisplayName("Save &As..."), "Save As...");
  EXPECT_EQ(DisplayName("Find && &Replace"), "Find & Replace");
  EXPECT_EQ(DisplayName("&a&b"), "ab");
  EXPECT_EQ(DisplayName("a&"), "a");
  EXPECT_EQ(DisplayName("a&&"), "a&");
  EXPECT_EQ(DisplayName("&&&x"), "&x");
  EXPECT_EQ(DisplayName("Copy"), "Copy");
  EXPECT_EQ(DisplayName(""), "");
}

TEST(HimetricTest, PicturesHaveTheirPixelsAgain) {
  EXPECT_EQ(HimetricToPixels(2540, 96), 96);
  EXPECT_EQ(HimetricToPixels(423, 96), 16);
  EXPECT_EQ(HimetricToPixels(-423, 96), -16);
  EXPECT_EQ(HimetricToPixels(0, 96), 0);
  EXPECT_EQ(HimetricToPixels(13, 96), 0);  // 0.49 pixels
  EXPECT_EQ(HimetricToPixels(14, 96), 1);
  for (const int dpi : {72, 96, 120, 144, 192, 600}) {
    for (int pixels = 1; pixels <= 1000; ++pixels) {
      const int himetric = (pixels * 2540 + dpi / 2) / dpi;
      ASSERT_EQ(HimetricToPixels(himetric, dpi), pixels) << "at " << dpi;
    }
  }
}

}  // namespace
}  // namespace snip::test
