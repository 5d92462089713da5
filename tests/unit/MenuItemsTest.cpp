#include "ui/menu/MenuItems.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/unit/TestMenu.h"

namespace snip::test {
namespace {

TEST(MenuItems, KeepsWhatWasAddedInOrder) {
  const auto owner = std::make_shared<int>(0);
  const std::shared_ptr<const Picture> picture(owner, reinterpret_cast<const Picture*>(owner.get()));
  MenuItems items;
  items.Add({.Caption = "Cu&t", .Checked = true, .Enabled = false, .Picture = picture, .ID = 42},
            MetricsAt(96), SevenPixels);
  items.Add({.Caption = "-"}, MetricsAt(96), SevenPixels);

  ASSERT_EQ(items.iCount(), 2);
  const MenuItem& cut = items.All()[0];
  EXPECT_EQ(cut.Caption, "Cu&t");
  EXPECT_TRUE(cut.Checked);
  EXPECT_FALSE(cut.Enabled);
  EXPECT_EQ(cut.Picture, picture);
  EXPECT_EQ(cut.ID, 42);
  EXPECT_FALSE(cut.IsSeparator());
  EXPECT_TRUE(items.All()[1].IsSeparator());
  EXPECT_EQ(items.Find(1), &items.All()[1]);
  EXPECT_EQ(items.Find(2), nullptr);
  EXPECT_EQ(items.Find(-1), nullptr);
}

TEST(MenuItems, TakesTheOwnIndexForAnIdOfMinusOne) {
  MenuItems items = MenuOf("iii");
  items.Add({.Caption = "Fourth", .ID = -1}, MetricsAt(96), SevenPixels);
  items.Add({.Caption = "Fifth", .ID = -2}, MetricsAt(96), SevenPixels);
  EXPECT_EQ(items.Find(3)->ID, 3);
  EXPECT_EQ(items.Find(4)->ID, -2);
}

TEST(MenuItems, GrowsWithTheWidestCaption) {
  MenuItems items;
  EXPECT_EQ(items.MaxWidth(), 0);
  // Seven pixels a character are 105 twips; the pictures take 375, the margin 60.
  items.Add({.Caption = "Four"}, MetricsAt(96), SevenPixels);
  EXPECT_EQ(items.MaxWidth(), 4 * 105 + 375 + 60);
  items.Add({.Caption = "-"}, MetricsAt(96), SevenPixels);
  EXPECT_EQ(items.MaxWidth(), 4 * 105 + 375 + 60);
  items.Add({.Caption = "S&even "}, MetricsAt(96), SevenPixels);
  EXPECT_EQ(items.MaxWidth(), 7 * 105 + 375 + 60);
}

TEST(MenuItems, KeepsWholeTwipsOnEveryScreen) {
  struct Case {
    int dpi;
    int maxWidth;
  };
  // 21 pixels of text.
  const std::vector<Case> cases = {{96, 315 + 435}, {120, 252 + 435}, {144, 210 + 435}, {192, 158 + 435}};
  for (const Case& screen : cases) {
    SCOPED_TRACE(screen.dpi);
    MenuItems items;
    items.Add({.Caption = "Cut"}, MetricsAt(screen.dpi), SevenPixels);
    EXPECT_EQ(items.MaxWidth(), screen.maxWidth);
  }
}

TEST(MenuItems, ClearForgetsItemsAndWidth) {
  MenuItems items = MenuOf("i-i");
  items.Clear();
  EXPECT_EQ(items.iCount(), 0);
  EXPECT_EQ(items.MaxWidth(), 0);
  items.Add({.Caption = "New"}, MetricsAt(96), SevenPixels);
  EXPECT_EQ(items.Find(0)->ID, 0);
}

TEST(MenuItems, FlagsAreReadAndSet) {
  MenuItems items = MenuOf("id");
  EXPECT_TRUE(items.IEnabled(0));
  EXPECT_FALSE(items.IEnabled(1));
  EXPECT_FALSE(items.IChecked(0));
  items.SetIEnabled(0, false);
  items.SetIEnabled(1, true);
  items.SetIChecked(0, true);
  EXPECT_FALSE(items.IEnabled(0));
  EXPECT_TRUE(items.IEnabled(1));
  EXPECT_TRUE(items.IChecked(0));
  EXPECT_FALSE(items.IChecked(1));
  items.SetIChecked(0, false);
  EXPECT_FALSE(items.IChecked(0));
}

TEST(MenuItems, PlacesThatDoNotExistReadAsFalseAndCannotBeSet) {
  MenuItems items = MenuOf("dd");
  for (const int index : {-10, -1, 2, 70000}) {
    SCOPED_TRACE(index);
    items.SetIEnabled(index, true);
    items.SetIChecked(index, true);
    EXPECT_FALSE(items.IEnabled(index));
    EXPECT_FALSE(items.IChecked(index));
  }
  for (const int index : {0, 1}) {
    EXPECT_FALSE(items.IEnabled(index));
    EXPECT_FALSE(items.IChecked(index));
  }
}

TEST(MenuItems, CountsSeparatorsAmongTheFirst) {
  const MenuItems items = MenuOf("-i--i-");
  const std::vector<int> counts = {0, 1, 1, 2, 3, 3, 4};
  for (int first = 0; first <= 6; ++first) {
    EXPECT_EQ(items.SeparatorCount(first), counts.at(static_cast<std::size_t>(first))) << first;
  }
  EXPECT_EQ(items.SeparatorCount(-1), 0);
  EXPECT_EQ(items.SeparatorCount(7), 4);
}

TEST(MenuItems, OnlyEnabledItemsThatAreNoSeparatorsCanBeClicked) {
  const MenuItems items = MenuOf("id-");
  EXPECT_TRUE(items.Find(0)->CanBeClicked());
  EXPECT_FALSE(items.Find(1)->CanBeClicked());
  EXPECT_FALSE(items.Find(2)->CanBeClicked());
}

TEST(MenuItems, AFullMenuTakesNoMore) {
  MenuItems items;
  for (int i = 0; i < 32767; ++i) items.Add({.Caption = "i"}, MetricsAt(96), SevenPixels);
  ASSERT_EQ(items.iCount(), 32767);
  const int width = items.MaxWidth();
  items.Add({.Caption = "One too many"}, MetricsAt(96), SevenPixels);
  EXPECT_EQ(items.iCount(), 32767);
  EXPECT_EQ(items.MaxWidth(), width);
  EXPECT_EQ(items.Find(32766)->ID, 32766);
}

}  // namespace
}  // namespace snip::test
