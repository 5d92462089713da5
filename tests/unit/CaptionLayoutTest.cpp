#include "ui/caption/CaptionLayout.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/unit/Printing.h"

namespace snip::test {
namespace {

CaptionParts Parts(int width, int dpi, bool sizeButtons, bool icon) {
  const bool large = dpi == 144;
  return {.titleBar = {4, 4, width, large ? 28 : 19},
          .buttonCell = large ? Size{27, 27} : Size{18, 18},
          .icon = icon ? Size{16 * dpi / 96, 16 * dpi / 96} : Size{},
          .sizeButtons = sizeButtons};
}

TEST(CaptionLayout, PlacesTheParts) {
  CaptionParts bare = Parts(300, 96, true, false);
  bare.closeButton = false;
  CaptionParts tool = Parts(300, 96, true, false);
  tool.titleBar.height = 16;
  tool.small = true;
  struct Case {
    CaptionParts parts;
    const char* places;  ///< The area, the icon and the text; then the buttons.
  };
  const std::vector<Case> cases = {
      {Parts(300, 96, true, true), "4,4 300x18 6,5 16x16 26,4 224x18; 286,6 16x14 268,6 16x14 252,6 16x14"},
      {Parts(300, 96, false, false), "4,4 300x18 6,13 0x0 6,4 278x18; 286,6 16x14"},
      {bare, "4,4 300x18 6,13 0x0 6,4 296x18;"},
      {tool, "4,4 300x15 5,11 0x0 5,4 284x15; 290,6 11x11"},
      {Parts(300, 144, true, true), "4,4 300x27 7,5 24x24 37,4 185x27; 277,6 25x23 250,6 25x23 225,6 25x23"},
      {Parts(20, 96, true, true), "4,4 20x18 6,5 16x16 26,4 0x18; 6,6 16x14 -12,6 16x14 -28,6 16x14"},
      {Parts(-3, 96, false, false), "4,4 0x18 6,13 0x0 6,4 0x18; -14,6 16x14"},
  };
  const auto text = [](const Rect& rect) {
    return std::to_string(rect.left) + "," + std::to_string(rect.top) + " " + std::to_string(rect.width) +
           "x" + std::to_string(rect.height);
  };
  for (const Case& bar : cases) {
    const CaptionLayout layout(bar.parts);
    std::string places = text(layout.Area()) + " " + text(layout.Icon()) + " " + text(layout.Text()) + ";";
    for (const Rect& button : layout.Buttons()) places += " " + text(button);
    EXPECT_EQ(places, bar.places);
  }
}

TEST(CaptionLayout, BandsFillTheAreaFromTheFirstColorToTheLast) {
  for (const int width : {0, 1, 2, 100, 255, 256, 257, 1000, 5000}) {
    SCOPED_TRACE(width);
    const CaptionLayout layout(Parts(width, 96, false, false));
    int left = 4;
    std::uint32_t previous = 0;
    for (int i = 0; i < layout.BandCount(); ++i) {
      const Rect band = layout.Band(i);
      ASSERT_EQ(band, (Rect{left, 4, band.width, 18}));
      ASSERT_GT(band.width, 0);
      left = band.right();
      const std::uint32_t color = layout.BandColor(i, 0x000010, 0xFF0010);
      ASSERT_EQ(color & 0xFFFF, 0x10U);
      ASSERT_TRUE(i == 0 ? color == 0x10 : color > previous);
      previous = color;
    }
    EXPECT_EQ(left, 4 + width);
    EXPECT_TRUE(width < 2 || previous == 0xFF0010);
  }
}

TEST(CaptionLayout, MixesEachComponent) {
  const CaptionLayout layout(Parts(101, 96, false, false));
  EXPECT_EQ(layout.BandColor(50, 0x0064C8, 0xC86400), 0x646464U);
  EXPECT_EQ(CaptionLayout(Parts(1, 96, false, false)).BandColor(0, 0x123456, 0xFFFFFF), 0x123456U);
}

}  // namespace
}  // namespace snip::test
