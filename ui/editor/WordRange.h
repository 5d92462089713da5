#pragma once

#include <cstddef>
#include <string_view>

namespace snip {

/// A part of a line: 0-based columns, the end excluded.
struct ColumnRange {
  std::size_t begin = 0;
  std::size_t end = 0;
  friend bool operator==(const ColumnRange&, const ColumnRange&) = default;
};

/// What a double click at `column` selects: the word there, a word being letters of any language, digits and
/// "_"; behind the end of a word, that word; a run of blanks; else the one character. Empty on an empty line.
ColumnRange WordAt(std::string_view line, std::size_t column);

}  // namespace snip
