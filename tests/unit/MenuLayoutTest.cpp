#include "ui/menu/MenuLayout.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/unit/Printing.h"
#include "tests/unit/TestMenu.h"

namespace snip::test {
namespace {

constexpr MenuMode kPlain{};
constexpr MenuMode kDocked{.allowDetach = true};
constexpr MenuMode kFloating{.allowDetach = true, .floating = true};
constexpr Size kClient{73, 300};

MenuLayout LayoutOf(const char* kinds, const MenuMode& mode, int dpi = 96) {
  return {MenuOf(kinds, MetricsAt(dpi)), MetricsAt(dpi), mode, kClient};
}

/// The rows of pixels that hit an item, from the first to the one past the last.
struct Span {
  int first = 0;
  int end = 0;
  friend bool operator==(const Span&, const Span&) = default;
};

void PrintTo(const Span& span, std::ostream* out) {
  *out << span.first << " to " << span.end;
}

Span HitRows(const MenuLayout& layout, int index) {
  std::optional<Span> span;
  for (int y = -50; y < 400; ++y) {
    if (layout.HitTest({5, y}) != index) continue;
    if (!span) span = Span{y, y};
    EXPECT_EQ(span->end, y) << "item " << index << " is hit in two places";
    span->end = y + 1;
  }
  return span.value_or(Span{});
}

Span Painted(const MenuLayout& layout, int index) {
  return {layout.Row(index).top, layout.Row(index).bottom()};
}

TEST(MenuLayout, RowsFollowEachOther) {
  struct Case {
    const char* kinds;
    std::vector<Span> rows;  ///< Without a drag bar, at 96 dpi.
  };
  const std::vector<Case> cases = {
      {"i", {{0, 21}}},
      {"-", {{0, 6}}},
      {"iii", {{0, 21}, {21, 42}, {42, 63}}},
      {"-ii", {{0, 6}, {6, 27}, {27, 48}}},
      {"ii-", {{0, 21}, {21, 42}, {42, 48}}},
      {"i--i", {{0, 21}, {21, 27}, {27, 33}, {33, 54}}},
      {"-i-d-", {{0, 6}, {6, 27}, {27, 33}, {33, 54}, {54, 60}}},
  };
  for (const Case& menu : cases) {
    SCOPED_TRACE(menu.kinds);
    const MenuLayout plain = LayoutOf(menu.kinds, kPlain);
    const MenuLayout docked = LayoutOf(menu.kinds, kDocked);
    const MenuLayout floating = LayoutOf(menu.kinds, kFloating);
    ASSERT_EQ(plain.iCount(), static_cast<int>(menu.rows.size()));
    for (int i = 0; i < plain.iCount(); ++i) {
      SCOPED_TRACE(i);
      const Span row = menu.rows.at(static_cast<std::size_t>(i));
      EXPECT_EQ(Painted(plain, i), row);
      EXPECT_EQ(HitRows(plain, i), row);
      // Below a drag bar all rows are painted 11 or 19 pixels lower, and hit one or two below that.
      EXPECT_EQ(Painted(docked, i), (Span{row.first + 11, row.end + 11}));
      EXPECT_EQ(HitRows(docked, i), (Span{row.first + 12, row.end + 12}));
      EXPECT_EQ(Painted(floating, i), (Span{row.first + 19, row.end + 19}));
      EXPECT_EQ(HitRows(floating, i), (Span{row.first + 21, row.end + 21}));
    }
  }
}

/// By how many pixels the rows that are hit lie below those that are painted.
TEST(MenuLayout, HitRowsLieALittleBelowThePaintedOnes) {
  struct Case {
    int dpi;
    MenuMode mode;
    /// Of the items of "ii-i": the separator's height is no whole number of pixels at 120 dpi, so that the
    /// rows above and below it are rounded differently.
    std::vector<int> below;
  };
  const std::vector<Case> cases = {
      {96, kPlain, {0, 0, 0, 0}},     {120, kPlain, {0, 0, 0, 0}},    {144, kPlain, {0, 0, 0, 0}},
      {192, kPlain, {0, 0, 0, 0}},    {96, kDocked, {1, 1, 1, 1}},    {120, kDocked, {1, 1, 1, 2}},
      {144, kDocked, {2, 2, 2, 2}},   {192, kDocked, {3, 3, 3, 3}},   {96, kFloating, {2, 2, 2, 2}},
      {120, kFloating, {2, 2, 2, 3}}, {144, kFloating, {3, 3, 3, 3}}, {192, kFloating, {6, 6, 6, 6}},
  };
  for (const Case& menu : cases) {
    const MenuLayout layout = LayoutOf("ii-i", menu.mode, menu.dpi);
    for (int i = 0; i < 4; ++i) {
      SCOPED_TRACE(testing::Message()
                   << menu.dpi << " dpi, floating " << menu.mode.floating << ", item " << i);
      EXPECT_EQ(HitRows(layout, i).first - Painted(layout, i).first,
                menu.below.at(static_cast<std::size_t>(i)));
    }
  }
}

TEST(MenuLayout, PaintedRowsFollowTheResolution) {
  struct Case {
    int dpi;
    MenuMode mode;
    std::vector<Span> rows;  ///< Of "i-i".
  };
  const std::vector<Case> cases = {
      {120, kPlain, {{0, 26}, {26, 32}, {34, 60}}},     {120, kDocked, {{14, 40}, {40, 46}, {47, 73}}},
      {120, kFloating, {{24, 50}, {50, 56}, {57, 83}}}, {144, kPlain, {{0, 31}, {31, 37}, {40, 71}}},
      {144, kDocked, {{17, 48}, {48, 54}, {57, 88}}},   {144, kFloating, {{29, 60}, {60, 66}, {69, 100}}},
      {192, kDocked, {{22, 64}, {64, 70}, {76, 118}}},
  };
  for (const Case& menu : cases) {
    const MenuLayout layout = LayoutOf("i-i", menu.mode, menu.dpi);
    for (int i = 0; i < 3; ++i) {
      SCOPED_TRACE(testing::Message()
                   << menu.dpi << " dpi, floating " << menu.mode.floating << ", item " << i);
      EXPECT_EQ(Painted(layout, i), menu.rows.at(static_cast<std::size_t>(i)));
    }
  }
}

TEST(MenuLayout, HitsOnlyWithinTheWidth) {
  for (const MenuMode& mode : {kPlain, kDocked, kFloating}) {
    const MenuLayout layout = LayoutOf("ii", mode);
    const int y = layout.Row(1).top + 5;
    EXPECT_EQ(layout.HitTest({-1, y}), MenuHot::kNoItem);
    EXPECT_EQ(layout.HitTest({0, y}), 1);
    EXPECT_EQ(layout.HitTest({72, y}), 1);
    EXPECT_EQ(layout.HitTest({73, y}), MenuHot::kNoItem);
  }
}

TEST(MenuLayout, BesideTheRowsThereIsNoItem) {
  EXPECT_EQ(LayoutOf("ii", kPlain).HitTest({5, -1}), MenuHot::kNoItem);
  EXPECT_EQ(LayoutOf("ii", kPlain).HitTest({5, 42}), MenuHot::kNoItem);
  EXPECT_EQ(LayoutOf("ii", kDocked).HitTest({5, 11}), MenuHot::kNoItem);
  EXPECT_EQ(LayoutOf("ii", kDocked).HitTest({5, 54}), MenuHot::kNoItem);
  EXPECT_EQ(LayoutOf("", kPlain).HitTest({5, 0}), MenuHot::kNoItem);
}

TEST(MenuLayout, TheFirstMatchWins) {
  // A font so small that separators are higher than items, whose rows then overlap.
  MenuMetrics metrics = MetricsAt(96);
  metrics.ItemHeight = 60;
  metrics.SeparatorDelta = 0;
  const MenuLayout layout(MenuOf("-i", metrics), metrics, kPlain, kClient);
  EXPECT_EQ(layout.HitTest({5, 5}), 0);  // twip 75: of the separator to 90, of the item from 60
  EXPECT_EQ(layout.HitTest({5, 6}), 1);
}

TEST(MenuLayout, TheDragBarIsOnTop) {
  struct Case {
    int dpi;
    MenuMode mode;
    int height;
  };
  const std::vector<Case> cases = {
      {96, kDocked, 6},    {120, kDocked, 8},    {144, kDocked, 9},    {192, kDocked, 12},
      {96, kFloating, 14}, {120, kFloating, 18}, {144, kFloating, 21}, {192, kFloating, 28},
  };
  for (const Case& menu : cases) {
    SCOPED_TRACE(testing::Message() << menu.dpi << " dpi, floating " << menu.mode.floating);
    const MenuLayout layout = LayoutOf("i", menu.mode, menu.dpi);
    EXPECT_EQ(layout.DragBar(), (Rect{0, 0, 73, menu.height}));
    EXPECT_EQ(HitRows(layout, MenuHot::kDragBar), (Span{0, menu.height}));
    EXPECT_EQ(layout.HitTest({-1, 2}), MenuHot::kNoItem);
    EXPECT_EQ(layout.HitTest({0, 2}), MenuHot::kDragBar);
    EXPECT_EQ(layout.HitTest({72, 2}), MenuHot::kDragBar);
    EXPECT_EQ(layout.HitTest({73, 2}), MenuHot::kNoItem);
  }
  EXPECT_EQ(LayoutOf("i", kPlain).DragBar(), Rect{});
  EXPECT_EQ(LayoutOf("i", kPlain).HitTest({5, 0}), 0);
}

TEST(MenuLayout, TheCloseBoxIsAtTheRightEndOfATornOffMenusDragBar) {
  const MenuLayout floating = LayoutOf("i", kFloating);
  EXPECT_EQ(floating.CloseBox(), (Rect{59, 1, 12, 12}));
  EXPECT_EQ(LayoutOf("i", kDocked).CloseBox(), Rect{});

  EXPECT_FALSE(floating.OnCloseBox({59, 5}));
  EXPECT_TRUE(floating.OnCloseBox({60, 5}));
  EXPECT_TRUE(floating.OnCloseBox({72, 13}));
  EXPECT_FALSE(floating.OnCloseBox({73, 5}));
  EXPECT_FALSE(floating.OnCloseBox({65, -1}));
  EXPECT_FALSE(floating.OnCloseBox({65, 14}));
  EXPECT_FALSE(LayoutOf("i", kDocked).OnCloseBox({65, 3}));
}

TEST(MenuLayout, TheDragBarIsHeldLeftOfTheCloseBox) {
  for (const MenuMode& mode : {kDocked, kFloating}) {
    const MenuLayout layout = LayoutOf("i", mode);
    EXPECT_FALSE(layout.OnDragHandle({0, 3}));
    EXPECT_TRUE(layout.OnDragHandle({1, 3}));
    EXPECT_TRUE(layout.OnDragHandle({59, 3}));
    EXPECT_FALSE(layout.OnDragHandle({60, 3}));
    EXPECT_FALSE(layout.OnDragHandle({30, layout.DragBar().bottom()}));
  }
  EXPECT_FALSE(LayoutOf("i", kPlain).OnDragHandle({30, 3}));
}

TEST(MenuLayout, RowsTakeTheWholeWidth) {
  for (const MenuMode& mode : {kPlain, kDocked, kFloating}) {
    const MenuLayout layout = LayoutOf("i-", mode);
    for (const int index : {0, 1}) {
      EXPECT_EQ(layout.Row(index).left, 0);
      EXPECT_EQ(layout.Row(index).width, 73);
    }
  }
}

TEST(MenuLayout, PicturesStandInASquareAtTheLeft) {
  struct Case {
    int dpi;
    Rect cell;  ///< Of the second item.
    Rect picture;
  };
  const std::vector<Case> cases = {
      {96, {0, 32, 21, 21}, {3, 35, 16, 16}},
      {120, {0, 40, 26, 26}, {4, 44, 20, 20}},
      {144, {0, 48, 31, 31}, {5, 53, 24, 24}},
      {192, {0, 64, 42, 42}, {7, 71, 32, 32}},
  };
  for (const Case& item : cases) {
    SCOPED_TRACE(item.dpi);
    const MenuLayout layout = LayoutOf("ii", kDocked, item.dpi);
    EXPECT_EQ(layout.PictureCell(1), item.cell);
    EXPECT_EQ(layout.PictureArea(1), item.picture);
  }
}

TEST(MenuLayout, CaptionsBeginRightOfThePictures) {
  struct Case {
    int dpi;
    int left;
  };
  const std::vector<Case> cases = {{96, 25}, {120, 31}, {144, 38}, {192, 50}};
  for (const Case& screen : cases) {
    SCOPED_TRACE(screen.dpi);
    const MenuLayout docked = LayoutOf("ii", kDocked, screen.dpi);
    const Rect row = docked.Row(1);
    EXPECT_EQ(docked.Caption(1), (Rect{screen.left, row.top, 73 - screen.left, row.height}));
    const MenuLayout floating = LayoutOf("ii", kFloating, screen.dpi);
    EXPECT_EQ(floating.Caption(1),
              (Rect{screen.left + 2, floating.Row(1).top, 71 - screen.left, floating.Row(1).height}));
  }
}

TEST(MenuLayout, SeparatorsAreTwoLines) {
  struct Case {
    int dpi;
    int margin;
    int rowTop;
  };
  const std::vector<Case> cases = {{96, 2, 32}, {120, 3, 40}, {144, 3, 48}, {192, 4, 64}};
  for (const Case& screen : cases) {
    SCOPED_TRACE(screen.dpi);
    const MenuLayout::SeparatorLines lines = LayoutOf("i-", kDocked, screen.dpi).Separator(1);
    EXPECT_EQ(lines.shadow, (Rect{screen.margin, screen.rowTop + 2, 73 - 2 * screen.margin, 1}));
    EXPECT_EQ(lines.highlight, (Rect{screen.margin, screen.rowTop + 3, 73 - 2 * screen.margin, 1}));
  }
}

TEST(MenuLayout, ContainsItsClientArea) {
  const MenuLayout layout = LayoutOf("i", kPlain);
  EXPECT_TRUE(layout.Contains({0, 0}));
  EXPECT_TRUE(layout.Contains({72, 299}));
  EXPECT_FALSE(layout.Contains({-1, 0}));
  EXPECT_FALSE(layout.Contains({0, -1}));
  EXPECT_FALSE(layout.Contains({73, 0}));
  EXPECT_FALSE(layout.Contains({0, 300}));
}

}  // namespace
}  // namespace snip::test
