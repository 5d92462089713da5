#pragma once

#include <optional>

#include "platform/Geometry.h"
#include "platform/Twips.h"

namespace snip {

// Where the parts of the main window go. Everything is in twips. The one-twip offsets are intended: each
// splitter overlaps the pane before it a little.

/// Left margin of the panes.
constexpr int kPaneGap = 5;
/// Width of the vertical and height of the horizontal splitter.
constexpr int kSplitterSize = 75;

/// The least sizes that the splitters leave to the parts before them.
constexpr int kLeastLeftPaneWidth = 450;
constexpr int kLeastDescriptionHeight = 250;

struct MainWindowSizes {
  Size client;            ///< Inner size of the window.
  int barHeight = 0;      ///< Height of `cmd`.
  int leftPaneWidth = 0;  ///< Current width of the left pane.
  int rightPaneTop =
      0;  ///< Current place of the right pane and `picSplt`, which decide whether there is room.
  int splitterRight = 0;
};

struct MainWindowPlaces {
  Rect leftPane;
  Rect rightPane;
  Rect splitter;
};

/// Places of the panes; none when the window is too small, which then keeps its last layout.
std::optional<MainWindowPlaces> LayOutMainWindow(const MainWindowSizes& sizes);

struct RightPaneSizes {
  Size inner;                 ///< Inner size of the pane.
  int descriptionHeight = 0;  ///< Height of `txtDesc`.
  int attachPanelWidth = 0;   ///< Width of the attachment panel.
  int editBarHeight = 0;      ///< Height of `cmdEdit`.
  int splitterBottom = 0;     ///< Current bottom of `picHSplt`.
};

struct RightPanePlaces {
  Rect attachPanel;
  Rect description;
  Rect editBar;
  Rect code;
  Rect splitter;
};

/// Places inside the right pane; none when it is too small.
std::optional<RightPanePlaces> LayOutRightPane(const RightPaneSizes& sizes);
/// The same for a pane of any height; the code field may get no room.
RightPanePlaces PlaceRightPane(const RightPaneSizes& sizes);

/// The widest left pane and the highest description with which a window of that inner size lays everything
/// out and still shows some of the code.
Size RoomForSplitters(Size client, int barHeight, TwipsPerPixel pixel);

/// How wide the left pane becomes when the vertical splitter is let go with its left edge there.
int LeftPaneWidthAfterDrop(int splitterLeft, int clientWidth);
/// How high the description becomes when the horizontal splitter is let go with its top edge there.
int DescriptionHeightAfterDrop(int splitterTop, int paneHeight);

}  // namespace snip
