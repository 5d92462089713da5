#pragma once

#include <cstddef>
#include <string>

#include "ui/editor/WordRange.h"

namespace snip {

enum class SelectionUnit { Word, Line };

/// Selects whole words or lines: from the one in which the mouse button was pressed to the one it was dragged
/// to. Places are characters from 0.
class UnitSelection {
 public:
  struct Range {
    std::size_t anchor = 0;  ///< Where it began.
    std::size_t active = 0;  ///< Where the caret goes: before the anchor when it was dragged backwards.
    friend bool operator==(const Range&, const Range&) = default;
  };

  /// `text` has lines that end in CR, a line's end being part of the line. See `WordAt` for what a word is.
  UnitSelection(std::string text, SelectionUnit unit, std::size_t pressed);

  Range To(std::size_t place) const;

 private:
  ColumnRange UnitAt(std::size_t place) const;

  std::string text_;
  SelectionUnit unit_;
  ColumnRange pressed_;
};

}  // namespace snip
