#include "ui/main/TipPlacement.h"

#include <gtest/gtest.h>

#include <vector>

namespace snip::test {
namespace {

TEST(TipPlacement, StaysOnTheScreenSideways) {
  struct Case {
    const char* name;
    std::optional<int> x, y;
    int textWidth;
    Rect expected;
  };
  // The pointer is at (500, 300) of a screen 1000 pixels wide; a line is 13 pixels high.
  const std::vector<Case> cases = {
      {"where it is wanted", 40, 60, 100, {40, 60, 100, 17}},
      {"in the screen's corner", 0, 0, 100, {0, 0, 100, 17}},
      {"at the pointer's x", {}, 60, 100, {500, 60, 100, 17}},
      {"below the pointer", 40, {}, 100, {40, 320, 100, 17}},
      {"left of the screen is wanted", -30, 60, 100, {-30, 60, 100, 17}},
      {"up to the right edge", 900, 60, 100, {900, 60, 100, 17}},
      {"past the right edge", 901, 60, 100, {900, 60, 100, 17}},
      {"at the pointer past the right edge", {}, 60, 600, {400, 60, 600, 17}},
      {"wider than the screen", 40, 60, 1200, {0, 60, 1200, 17}},
  };
  for (const Case& tip : cases) {
    SCOPED_TRACE(tip.name);
    const Rect place = PlaceTip({.x = tip.x,
                                 .y = tip.y,
                                 .pointer = {500, 300},
                                 .text = {tip.textWidth, 13},
                                 .screen = {0, 0, 1000, 700}});
    EXPECT_EQ(place, tip.expected);
  }
}

TEST(TipPlacement, StaysOnTheScreenThatItComesUpOn) {
  const auto left = [](int x, int width) {
    return PlaceTip({.x = x, .y = 60, .pointer = {}, .text = {width, 13}, .screen = {-800, 0, 800, 600}})
        .left;
  };
  EXPECT_EQ(left(-700, 100), -700);
  EXPECT_EQ(left(-50, 100), -100);
  EXPECT_EQ(left(-50, 900), -800);
}

}  // namespace
}  // namespace snip::test
