#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace snip {

/// The lines of a text, without the CR LF between them: one more than it has CR LF. They are views of `text`.
std::vector<std::string_view> SplitLines(std::string_view text);

/// Lines that one text has in place of lines of another. Line numbers are from 0.
struct LineChange {
  std::size_t oldFirst = 0;  ///< The first line replaced, or the one before which lines are added.
  std::size_t oldCount = 0;
  std::size_t newFirst = 0;  ///< The first line of the replacement, or where the removed lines were.
  std::size_t newCount = 0;

  friend bool operator==(const LineChange&, const LineChange&) = default;
};

/// What changes one text into another, in the order of the lines; between two changes there is at least one
/// equal line. There are as few changed lines as possible, unless the texts are so different that finding
/// these would take long: then the time stays below a constant times the number of lines. Memory is
/// proportional to the number of lines.
std::vector<LineChange> CompareLines(std::span<const std::string_view> oldLines,
                                     std::span<const std::string_view> newLines);

}  // namespace snip
