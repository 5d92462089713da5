#pragma once

#include <cstdint>

namespace snip {

/// The state of a splitter's drag. Positions are pixels on the axis on which it moves, relative to the
/// splitter.
class SplitterDrag {
 public:
  enum class Reaction { None, Begin, Drop };

  bool dragging() const { return start_ != kNoDrag; }

  /// Only the left button begins a drag; any other one ends it where the splitter is.
  Reaction MouseDown(bool leftButton, std::int32_t position) {
    if (leftButton) {
      start_ = position;
      return Reaction::Begin;
    }
    return MouseUp();
  }
  /// How far the splitter has to move to follow the mouse, in pixels; 0 without a drag.
  std::int32_t MouseMove(std::int32_t position) const { return dragging() ? position - start_ : 0; }
  Reaction MouseUp() {
    const bool dropped = dragging();
    start_ = kNoDrag;
    return dropped ? Reaction::Drop : Reaction::None;
  }

 private:
  static constexpr std::int32_t kNoDrag = 2147483647;  ///< No mouse gets there.

  std::int32_t start_ = kNoDrag;
};

}  // namespace snip
