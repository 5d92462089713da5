#pragma once

#include <cstdint>
#include <vector>

#include "platform/Geometry.h"

namespace snip {

/// What a title bar consists of. Lengths are in pixels.
struct CaptionParts {
  Rect titleBar;    ///< Within the window's frame; its lowest row belongs to the window's inside.
  Size buttonCell;  ///< SM_CXSIZE and SM_CYSIZE: a button with the space around it.
  Size icon;        ///< Empty when none is shown.
  bool closeButton = true;
  bool sizeButtons = false;  ///< Minimise and maximise; the system always shows the two together.
  bool small = false;        ///< Of a tool window: low, with a close button of its own size.
};

/// Where the parts of a title bar are, in the pixels of `CaptionParts::titleBar`. The buttons are where a
/// frame without a visual style has them. No rectangle has a negative size, however narrow the window is.
class CaptionLayout {
 public:
  explicit CaptionLayout(const CaptionParts& parts);

  /// What is painted, buttons included.
  const Rect& Area() const { return area_; }
  /// From right to left; the last two may be beyond the left end of a narrow title bar.
  const std::vector<Rect>& Buttons() const { return buttons_; }
  const Rect& Icon() const { return icon_; }
  /// For one line, vertically centred.
  const Rect& Text() const { return text_; }

  /// Upright bands of one colour each, which fill the area from left to right: as many as there are shades,
  /// or pixels if these are fewer.
  int BandCount() const;
  /// `index` from 0 to BandCount() - 1.
  Rect Band(int index) const;
  /// The colour of a band, 0xBBGGRR: `start` in the first and `end` in the last one.
  std::uint32_t BandColor(int index, std::uint32_t start, std::uint32_t end) const;

 private:
  Rect area_;
  std::vector<Rect> buttons_;
  Rect icon_;
  Rect text_;
};

}  // namespace snip
