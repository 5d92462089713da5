#include "ui/main/MainWindowLayout.h"

#include <algorithm>

namespace snip {

std::optional<MainWindowPlaces> LayOutMainWindow(const MainWindowSizes& sizes) {
  if (sizes.rightPaneTop + 500 > sizes.client.height) return std::nullopt;
  if (sizes.splitterRight + 360 > sizes.client.width) return std::nullopt;

  const int top = sizes.barHeight + 15;
  const int height = sizes.client.height - sizes.barHeight - 40;
  const int rightPaneLeft = kPaneGap + sizes.leftPaneWidth + kSplitterSize - 1;
  return MainWindowPlaces{
      .leftPane = {kPaneGap - 1, top, sizes.leftPaneWidth, height},
      .rightPane = {rightPaneLeft, top, sizes.client.width - rightPaneLeft - kPaneGap + 1, height},
      .splitter = {sizes.leftPaneWidth, top, kSplitterSize, height},
  };
}

std::optional<RightPanePlaces> LayOutRightPane(const RightPaneSizes& sizes) {
  if (sizes.inner.height < 450 || sizes.splitterBottom + 360 > sizes.inner.height) return std::nullopt;
  return PlaceRightPane(sizes);
}

RightPanePlaces PlaceRightPane(const RightPaneSizes& sizes) {
  const auto [width, height] = sizes.inner;
  const int editBarTop = sizes.descriptionHeight + 74;
  const int codeTop = editBarTop + sizes.editBarHeight;
  return RightPanePlaces{
      .attachPanel = {width - sizes.attachPanelWidth, 0, sizes.attachPanelWidth, sizes.descriptionHeight},
      .description = {0, 0, width - sizes.attachPanelWidth - 135, sizes.descriptionHeight},
      .editBar = {0, editBarTop, width, sizes.editBarHeight},
      .code = {0, codeTop, width, std::max(0, height - codeTop)},
      .splitter = {0, sizes.descriptionHeight, width, kSplitterSize},
  };
}

Size RoomForSplitters(Size client, int barHeight, TwipsPerPixel pixel) {
  // One pixel less, because the edges of the panes are rounded to whole pixels.
  const int codeHeight = barHeight;
  return {client.width - kSplitterSize - 360 - pixel.ToTwipsX(1),
          client.height - barHeight - 40 - kSplitterSize - 360 - codeHeight - pixel.ToTwipsY(1)};
}

int LeftPaneWidthAfterDrop(int splitterLeft, int clientWidth) {
  if (splitterLeft < kLeastLeftPaneWidth) return kLeastLeftPaneWidth;
  // Not negative in a window that is narrower than both limits.
  return std::max(0, std::min(splitterLeft, clientWidth - 650));
}

int DescriptionHeightAfterDrop(int splitterTop, int paneHeight) {
  if (splitterTop < kLeastDescriptionHeight) return kLeastDescriptionHeight;
  return std::max(0, std::min(splitterTop, paneHeight - 250));
}

}  // namespace snip
