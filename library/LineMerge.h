#pragma once

#include <string>
#include <string_view>

namespace snip {

/// A merge of two changed versions of a text. Both texts have the changes of both sides; where these
/// contradict each other, each has those of its own side.
struct MergedText {
  std::string ours;
  std::string theirs;

  bool conflict() const { return ours != theirs; }
};

/// Merges by lines, which CR LF separates. Changes contradict each other if they replace the same lines of
/// `base`, or add different lines at the same place.
MergedText MergeLines(std::string_view base, std::string_view ours, std::string_view theirs);

/// Merges texts of one line: a side that has the text of `base` gives way to the other.
MergedText MergeWhole(std::string_view base, std::string_view ours, std::string_view theirs);

}  // namespace snip
