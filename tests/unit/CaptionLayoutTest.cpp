#include "ui/caption/CaptionLayout.h"

#include <gtest/gtest.h>

#include <cstdint>
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
    const char* name;
    CaptionParts parts;
    Rect area;
    std::vector<Rect> buttons;
    Rect icon;
    Rect text;
  };
  const std::vector<Case> cases = {
      {"all",
       Parts(300, 96, true, true),
       {4, 4, 300, 18},
       {{286, 6, 16, 14}, {268, 6, 16, 14}, {252, 6, 16, 14}},
       {6, 5, 16, 16},
       {26, 4, 224, 18}},
      {"dialog",
       Parts(300, 96, false, false),
       {4, 4, 300, 18},
       {{286, 6, 16, 14}},
       {6, 13, 0, 0},
       {6, 4, 278, 18}},
      {"bare", bare, {4, 4, 300, 18}, {}, {6, 13, 0, 0}, {6, 4, 296, 18}},
      {"tool", tool, {4, 4, 300, 15}, {{290, 6, 11, 11}}, {5, 11, 0, 0}, {5, 4, 284, 15}},
      {"144 dpi",
       Parts(300, 144, true, true),
       {4, 4, 300, 27},
       {{277, 6, 25, 23}, {250, 6, 25, 23}, {225, 6, 25, 23}},
       {7, 5, 24, 24},
       {37, 4, 185, 27}},
      {"narrow",
       Parts(20, 96, true, true),
       {4, 4, 20, 18},
       {{6, 6, 16, 14}, {-12, 6, 16, 14}, {-28, 6, 16, 14}},
       {6, 5, 16, 16},
       {26, 4, 0, 18}},
      {"nothing",
       Parts(-3, 96, false, false),
       {4, 4, 0, 18},
       {{-14, 6, 16, 14}},
       {6, 13, 0, 0},
       {6, 4, 0, 18}},
  };
  for (const Case& bar : cases) {
    SCOPED_TRACE(bar.name);
    const CaptionLayout layout(bar.parts);
    EXPECT_EQ(layout.Area(), bar.area);
    EXPECT_EQ(layout.Buttons(), bar.buttons);
    EXPECT_EQ(layout.Icon(), bar.icon);
    EXPECT_EQ(layout.Text(), bar.text);
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
