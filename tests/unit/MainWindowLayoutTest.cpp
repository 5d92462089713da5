#include "ui/main/MainWindowLayout.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "platform/Twips.h"
#include "tests/unit/Printing.h"
#include "ui/main/SplitterDrag.h"

namespace snip::test {
namespace {

constexpr MainWindowSizes kWindow{.client = {10800, 7200},
                                  .barHeight = 500,
                                  .leftPaneWidth = 3000,
                                  .rightPaneTop = 515,
                                  .splitterRight = 3075};

constexpr RightPaneSizes kRightPane{.inner = {7717, 6660},
                                    .descriptionHeight = 800,
                                    .attachPanelWidth = 1500,
                                    .editBarHeight = 400,
                                    .splitterBottom = 875};

TEST(MainWindowLayoutTest, PanesAndSplitterStandBelowTheBarWithTheirOneTwipOffsets) {
  const auto places = LayOutMainWindow(kWindow);
  ASSERT_TRUE(places.has_value());
  EXPECT_EQ(places->leftPane, (Rect{4, 515, 3000, 6660}));
  EXPECT_EQ(places->splitter, (Rect{3000, 515, 75, 6660}));
  EXPECT_EQ(places->rightPane, (Rect{3079, 515, 7717, 6660}));
}

TEST(MainWindowLayoutTest, AWindowThatIsTooSmallKeepsItsLastLayout) {
  struct Case {
    Size client;
    int rightPaneTop, splitterRight;  // what counts is where the parts are, not where they would go
    bool laidOut;
  };
  for (const auto& [client, top, right, laidOut] :
       {Case{{3075 + 360, 515 + 500}, 515, 3075, true}, Case{{3075 + 359, 7200}, 515, 3075, false},
        Case{{10800, 515 + 499}, 515, 3075, false}, Case{{10800, 7200}, 515, 10800 - 359, false},
        Case{{10800, 7200}, 7200 - 499, 3075, false}}) {
    MainWindowSizes sizes = kWindow;
    sizes.client = client;
    sizes.rightPaneTop = top;
    sizes.splitterRight = right;
    EXPECT_EQ(LayOutMainWindow(sizes).has_value(), laidOut) << client.width << " " << client.height;
  }
}

TEST(MainWindowLayoutTest, TheRightPaneHoldsDescriptionBarAndCode) {
  const auto places = LayOutRightPane(kRightPane);
  ASSERT_TRUE(places.has_value());
  EXPECT_EQ(places->attachPanel, (Rect{6217, 0, 1500, 800}));
  EXPECT_EQ(places->description, (Rect{0, 0, 6082, 800}));
  EXPECT_EQ(places->splitter, (Rect{0, 800, 7717, 75}));
  EXPECT_EQ(places->editBar, (Rect{0, 874, 7717, 400}));
  EXPECT_EQ(places->code, (Rect{0, 1274, 7717, 5386}));
}

TEST(MainWindowLayoutTest, ARightPaneThatIsTooLowKeepsItsLastLayout) {
  for (const auto& [splitterBottom, height, laidOut] :
       {std::tuple(875, 875 + 360, true), std::tuple(875, 875 + 359, false), std::tuple(75, 450, true),
        std::tuple(75, 449, false)}) {
    RightPaneSizes sizes = kRightPane;
    sizes.splitterBottom = splitterBottom;
    sizes.inner.height = height;
    EXPECT_EQ(LayOutRightPane(sizes).has_value(), laidOut) << height;
  }
}

TEST(MainWindowLayoutTest, SplittersStopShortOfTheEdges) {
  using Rows = std::vector<std::tuple<int, int, int>>;
  for (const auto& [dropped, extent, size] : Rows{{-500, 10800, 450},
                                                  {449, 10800, 450},
                                                  {10150, 10800, 10150},
                                                  {10151, 10800, 10150},
                                                  {500, 600, 0}}) {
    EXPECT_EQ(LeftPaneWidthAfterDrop(dropped, extent), size) << dropped;
  }
  for (const auto& [dropped, extent, size] :
       Rows{{-9, 6000, 250}, {249, 6000, 250}, {5750, 6000, 5750}, {5751, 6000, 5750}, {300, 200, 0}}) {
    EXPECT_EQ(DescriptionHeightAfterDrop(dropped, extent), size) << dropped;
  }
}

TEST(MainWindowLayoutTest, WithinTheRoomForSplittersEverythingIsLaidOutWithSomeOfTheCode) {
  constexpr int pixel = 15;
  const Size room = RoomForSplitters(kWindow.client, kWindow.barHeight, {pixel, pixel});
  for (const int more : {0, pixel, pixel + 1}) {
    MainWindowSizes window = kWindow;
    window.leftPaneWidth = room.width + more;
    window.splitterRight = window.leftPaneWidth + kSplitterSize;
    EXPECT_EQ(LayOutMainWindow(window).has_value(), more <= pixel);
  }
  RightPaneSizes pane = kRightPane;
  pane.inner.height = LayOutMainWindow(kWindow)->rightPane.height;
  pane.descriptionHeight = room.height;
  pane.splitterBottom = pane.descriptionHeight + kSplitterSize;
  const auto places = LayOutRightPane(pane);
  ASSERT_TRUE(places.has_value());
  EXPECT_EQ(places->code.height, 476) << "less than a bar's height of 500 by the gaps around";
}

TEST(SplitterDragTest, OnlyTheLeftButtonDragsAndAnyReleaseOrOtherButtonDrops) {
  using Reaction = SplitterDrag::Reaction;
  SplitterDrag drag;
  EXPECT_EQ(drag.MouseDown(false, 5), Reaction::None);
  EXPECT_EQ(drag.MouseUp(), Reaction::None);
  EXPECT_EQ(drag.MouseMove(50), 0);
  EXPECT_EQ(drag.MouseDown(true, 5), Reaction::Begin);
  EXPECT_EQ(drag.MouseMove(5), 0);
  EXPECT_EQ(drag.MouseMove(-20), -25);
  EXPECT_EQ(drag.MouseDown(false, 7), Reaction::Drop);
  EXPECT_FALSE(drag.dragging());
  EXPECT_EQ(drag.MouseUp(), Reaction::None);
  EXPECT_EQ(drag.MouseDown(true, 0), Reaction::Begin);
  EXPECT_EQ(drag.MouseUp(), Reaction::Drop);
}

TEST(TwipsTest, ScreensMayDifferAcrossAndDown) {
  const auto twips = TwipsPerPixel::FromDpi(96, 144);
  EXPECT_EQ(twips.ToTwips({10, 10}), (Size{150, 100}));
  EXPECT_EQ(twips.ToPixels({150, 150, 300, 300}), (Rect{10, 15, 20, 30}));
}

TEST(TwipsTest, NeighboursInTwipsStayNeighboursInPixelsAndSizesSurvive) {
  for (const int dpi : {72, 96, 110, 120, 144, 168, 192}) {
    SCOPED_TRACE(dpi);
    const auto twips = TwipsPerPixel::FromDpi(dpi, dpi);
    for (int edge = -30; edge <= 700; ++edge) {
      const Rect before = twips.ToPixels({4, 4, edge - 4, edge - 4});
      const Rect after = twips.ToPixels({edge, edge, 333, 333});
      ASSERT_EQ(before.right(), after.left) << edge;
      ASSERT_EQ(before.bottom(), after.top) << edge;
      ASSERT_EQ(twips.ToPixelsX(twips.ToTwipsX(edge)), edge);
      ASSERT_EQ(twips.ToPixelsY(twips.ToTwipsY(edge)), edge);
    }
  }
}

}  // namespace
}  // namespace snip::test
