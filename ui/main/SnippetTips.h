#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Geometry.h"

namespace snip {

/// What decides where a tip goes; screen pixels.
struct TipRequest {
  std::optional<int> x;  ///< Wanted left edge; without one the pointer's x.
  std::optional<int> y;  ///< Wanted top edge; without one a place below the pointer.
  Point pointer;
  Size text;    ///< Size of the text with a blank before and after it.
  Rect screen;  ///< The screen that the tip must fit on.
};

/// A tip that would leave the screen on the right is pushed left, but never past the left edge.
Rect PlaceTip(const TipRequest& request);

/// What the tips over the snippet list ask of the list, the tip window and the mouse. All in pixels.
class TipSurroundings {
 public:
  virtual ~TipSurroundings() = default;

  enum class Place { List, Tip, Elsewhere };
  virtual Place PlaceOfPointer() = 0;
  /// The list's entry where `PlaceOfPointer` found the pointer; 65536 or more below the last one.
  virtual std::int32_t EntryAtPointer() const = 0;
  virtual std::string EntryText(std::int32_t entry) const = 0;
  /// The point of the list's left edge, `y` pixels below its top, in screen pixels.
  virtual Point OnScreen(int y) const = 0;
  virtual int TopEntry() const = 0;
  virtual int EntryHeight() const = 0;
  virtual int TextWidth(const std::string& text) = 0;
  virtual int ListWidth() const = 0;

  virtual bool TipVisible() const = 0;
  virtual void ShowTip(const std::string& text, int x, int y) = 0;
  virtual void HideTip() = 0;
};

/// Shows the whole text of an entry that is too wide for the list exactly over the entry, while the mouse is
/// on it. Selected entries get a tip like any other.
class SnippetTips {
 public:
  explicit SnippetTips(TipSurroundings& surroundings) : surroundings_(surroundings) {}

  void tTip_Timer();

 private:
  bool RowHasChanged() const;

  TipSurroundings& surroundings_;
  std::int32_t lastTipIndex_ = -1;  ///< The entry that was looked at last.
  std::string text_;                ///< Its text.
  int topEntry_ = 0;                ///< The list's first visible entry then.
};

}  // namespace snip
