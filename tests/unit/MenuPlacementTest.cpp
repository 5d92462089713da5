#include "ui/menu/MenuPlacement.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/Printing.h"
#include "tests/unit/TestMenu.h"

namespace snip::test {
namespace {

TEST(MenuMetrics, AreWholeTwipsOnEveryScreen) {
  struct Case {
    int dpi;
    int textHeight;
    int itemHeight, separatorDelta, textLeft;
  };
  const std::vector<Case> cases = {
      {96, 13, 315, 225, 375},
      {120, 16, 312, 222, 375},
      {144, 19, 310, 220, 375},
      {192, 26, 315, 225, 375},
      // 7.5 twips to the pixel: 187.5 of them.
      {192, 25, 308, 218, 375},
  };
  for (const Case& screen : cases) {
    SCOPED_TRACE(testing::Message() << screen.dpi << " dpi, " << screen.textHeight << " pixels");
    const MenuMetrics metrics = ResetInfo(screen.textHeight, TwipsPerPixel::FromDpi(screen.dpi, screen.dpi));
    EXPECT_EQ(metrics.ItemHeight, screen.itemHeight);
    EXPECT_EQ(metrics.SeparatorDelta, screen.separatorDelta);
    EXPECT_EQ(metrics.TextLeft, screen.textLeft);
  }
}

TEST(MenuMetrics, FollowPixelsThatAreNotSquare) {
  const MenuMetrics metrics = ResetInfo(10, {.x = 10, .y = 12});
  EXPECT_EQ(metrics.ItemHeight, 240);
  EXPECT_EQ(metrics.TextLeft, 375);
}

TEST(MenuPlacement, HeightCountsItemsAndSeparators) {
  struct Case {
    const char* kinds;
    int docked;  ///< Without the drag bar.
    int tornOff;
  };
  // An item is 315 twips high. A separator saves 225 of them in a docked menu, 195 in a torn-off one, but
  // nothing in the last place.
  const std::vector<Case> cases = {
      {"i", 315 + 120, 315 + 435},
      {"iiiii", 5 * 315 + 120, 5 * 315 + 435},
      {"-", 315 + 120, 315 + 435},
      {"-i", 2 * 315 - 225 + 120, 2 * 315 - 195 + 435},
      {"i-", 2 * 315 + 120, 2 * 315 + 435},
      {"i-i", 3 * 315 - 225 + 120, 3 * 315 - 195 + 435},
      {"i--i", 4 * 315 - 2 * 225 + 120, 4 * 315 - 2 * 195 + 435},
      {"i--", 3 * 315 - 225 + 120, 3 * 315 - 195 + 435},
      {"-i-d-", 5 * 315 - 2 * 225 + 120, 5 * 315 - 2 * 195 + 435},
  };
  for (const Case& menu : cases) {
    SCOPED_TRACE(menu.kinds);
    const MenuItems items = MenuOf(menu.kinds);
    const PopupRequest request{.X = 0, .Y = 0, .screen = {0, 0, 1024, 768}};
    EXPECT_EQ(PlacePopup(items, MetricsAt(96), request).height, menu.docked);
    PopupRequest detachable = request;
    detachable.AllowDetach = true;
    EXPECT_EQ(PlacePopup(items, MetricsAt(96), detachable).height, menu.docked + 165);
    EXPECT_EQ(TornOffHeight(items, MetricsAt(96)), menu.tornOff);
  }
}

TEST(MenuPlacement, FollowsTheResolution) {
  struct Case {
    int dpi;
    int textHeight;
    Size docked;
    int tornOff;
  };
  const std::vector<Case> cases = {
      {120, 16, {4 * 84 + 375 + 60 + 240, 3 * 312 - 222 + 285}, 3 * 312 - 192 + 435},
      {144, 19, {4 * 70 + 375 + 60 + 240, 3 * 310 - 220 + 285}, 3 * 310 - 190 + 435},
      {192, 26, {210 + 375 + 60 + 240, 3 * 315 - 225 + 285}, 3 * 315 - 195 + 435},
  };
  for (const Case& screen : cases) {
    SCOPED_TRACE(screen.dpi);
    const MenuMetrics metrics = ResetInfo(screen.textHeight, TwipsPerPixel::FromDpi(screen.dpi, screen.dpi));
    const MenuItems items = MenuOf("i-i", metrics);
    const Rect place =
        PlacePopup(items, metrics, {.X = 0, .Y = 0, .AllowDetach = true, .screen = {0, 0, 1024, 768}});
    EXPECT_EQ((Size{place.width, place.height}), screen.docked);
    EXPECT_EQ(TornOffHeight(items, metrics), screen.tornOff);
  }
}

/// A menu of 1095 x 1065 twips on a screen of 15360 x 11520 twips.
TEST(MenuPlacement, StaysOnTheScreen) {
  struct Case {
    const char* name;
    int X, Y;
    Point expected;
  };
  const std::vector<Case> cases = {
      {"where it is wanted", 3000, 2000, {3000, 2000}}, {"in the corner", 0, 0, {0, 0}},
      {"left of the screen", -500, -400, {-500, -400}}, {"near the right edge", 14264, 0, {14264, 0}},
      {"near the bottom edge", 0, 10454, {0, 10454}},   {"up to the right edge", 14265, 0, {14265, 0}},
      {"past the right edge", 14266, 0, {14265, 0}},    {"up to the bottom edge", 0, 10455, {0, 10455}},
      {"past the bottom edge", 0, 10456, {0, 10455}},   {"past both edges", 20000, 20000, {14265, 10455}},
      {"x of -1 alone is a place", -1, 700, {-1, 700}}, {"y of -1 alone is a place", 700, -1, {700, -1}},
      {"both -1 are the pointer", -1, -1, {150, 300}},
  };
  const MenuItems items = MenuOf("iii");
  for (const Case& menu : cases) {
    SCOPED_TRACE(menu.name);
    const Rect place = PlacePopup(
        items, MetricsAt(96), {.X = menu.X, .Y = menu.Y, .cursor = {10, 20}, .screen = {0, 0, 1024, 768}});
    EXPECT_EQ(place, (Rect{menu.expected.x, menu.expected.y, 1095, 1065}));
  }
}

TEST(MenuPlacement, ThePointerNearTheEdgesMovesTheMenuToo) {
  const MenuItems items = MenuOf("iii");
  const Rect place = PlacePopup(items, MetricsAt(96), {.cursor = {1023, 767}, .screen = {0, 0, 1024, 768}});
  EXPECT_EQ(place, (Rect{14265, 10455, 1095, 1065}));
}

TEST(MenuPlacement, StaysOnTheScreenThatItOpensOn) {
  const MenuItems items = MenuOf("iii");
  const Rect right{1024, -100, 800, 600};
  const Rect inside = PlacePopup(items, MetricsAt(96), {.X = 1100 * 15, .Y = -50 * 15, .screen = right});
  EXPECT_EQ(inside, (Rect{1100 * 15, -50 * 15, 1095, 1065}));
  const Rect corner = PlacePopup(items, MetricsAt(96), {.X = 1823 * 15, .Y = 499 * 15, .screen = right});
  EXPECT_EQ(corner, (Rect{1824 * 15 - 1095, 500 * 15 - 1065, 1095, 1065}));
}

TEST(MenuPlacement, ThePointerIsRoundedToTwips) {
  const MenuMetrics metrics = MetricsAt(192);
  const MenuItems items = MenuOf("i", metrics);
  const Rect place = PlacePopup(items, metrics, {.cursor = {3, 1}, .screen = {0, 0, 1024, 768}});
  EXPECT_EQ(place.left, 23);
  EXPECT_EQ(place.top, 8);
}

TEST(MenuPlacement, WiderOrHigherThanTheScreenItBeginsBeyondIt) {
  MenuItems items = MenuOf("iiiiiiiiii");
  items.Add({.Caption = std::string(100, 'x')}, MetricsAt(96), SevenPixels);
  const int width = 100 * 105 + 375 + 60 + 240;
  const int height = 11 * 315 + 120;
  const Rect place = PlacePopup(items, MetricsAt(96), {.X = 30, .Y = 45, .screen = {0, 0, 640, 200}});
  EXPECT_EQ(place, (Rect{640 * 15 - width, 200 * 15 - height, width, height}));
  EXPECT_LT(place.left, 0);
  EXPECT_LT(place.top, 0);
}

TEST(MenuPlacement, UnfoldsInEighths) {
  // 73 x 71 pixels.
  const Unfolding unfolding = Unfold({3014, 2015, 1095, 1065}, MetricsAt(96).twips);
  EXPECT_EQ(unfolding.corner, (Point{200, 134}));
  const std::array<Size, 8> sizes = {
      {{9, 9}, {18, 18}, {27, 27}, {37, 36}, {46, 44}, {55, 53}, {64, 62}, {73, 71}}};
  EXPECT_EQ(unfolding.sizes, sizes);
}

TEST(MenuPlacement, TheCornerIsCutToWholePixels) {
  struct Case {
    int dpi;
    Point twips;
    Point pixels;
  };
  const std::vector<Case> cases = {
      {96, {0, 14}, {0, 0}},   {96, {15, 29}, {1, 1}},  {96, {-14, -15}, {0, -1}},
      {120, {36, 35}, {3, 2}}, {144, {36, 40}, {3, 4}}, {192, {22, 23}, {2, 3}},
  };
  for (const Case& corner : cases) {
    SCOPED_TRACE(testing::Message() << corner.dpi << ": " << corner.twips.x << ", " << corner.twips.y);
    const Unfolding unfolding =
        Unfold({corner.twips.x, corner.twips.y, 900, 900}, TwipsPerPixel::FromDpi(corner.dpi, corner.dpi));
    EXPECT_EQ(unfolding.corner, corner.pixels);
  }
}

}  // namespace
}  // namespace snip::test
