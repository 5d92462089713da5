#include "library/LineDifference.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <unordered_map>

#include "library/LineEndings.h"

namespace snip {
namespace {

using Index = std::int32_t;

/// A line that both texts have: its place in its text, and a number that equal lines share.
struct SharedLine {
  std::size_t line;
  Index number;
};

/// Compares by the linear-space variant of Myers' algorithm (An O(ND) difference algorithm and its
/// variations, 1986): it searches from both ends for the middle of a shortest edit script, and divides there.
class Comparison {
 public:
  /// The lines of `a` and `b` that are not part of the common subsequence are marked in the other two.
  Comparison(std::span<const SharedLine> a, std::span<const SharedLine> b, std::vector<bool>& removed,
             std::vector<bool>& added)
      : a_(a), b_(b), removed_(removed), added_(added) {
    for (std::vector<Index>& furthest : furthest_) furthest.resize(a.size() + b.size() + 3);
    Compare(0, static_cast<Index>(a.size()), 0, static_cast<Index>(b.size()));
  }

 private:
  struct Point {
    Index x;  ///< How many lines of `a` are before it,
    Index y;  ///< and of `b`.
  };

  /// After so many steps from both ends the search divides at the best place so far.
  static constexpr int kMostSteps = 512;

  bool Same(Index x, Index y) const {
    return a_[static_cast<std::size_t>(x)].number == b_[static_cast<std::size_t>(y)].number;
  }

  void Compare(Index aFirst, Index aEnd, Index bFirst, Index bEnd) {
    for (;;) {
      while (aFirst < aEnd && bFirst < bEnd && Same(aFirst, bFirst)) ++aFirst, ++bFirst;
      while (aFirst < aEnd && bFirst < bEnd && Same(aEnd - 1, bEnd - 1)) --aEnd, --bEnd;
      if (aFirst == aEnd || bFirst == bEnd) break;
      const Point middle = Middle(aFirst, aEnd, bFirst, bEnd);
      Compare(aFirst, middle.x, bFirst, middle.y);
      aFirst = middle.x;
      bFirst = middle.y;
    }
    for (; aFirst < aEnd; ++aFirst) removed_[a_[static_cast<std::size_t>(aFirst)].line] = true;
    for (; bFirst < bEnd; ++bFirst) added_[b_[static_cast<std::size_t>(bFirst)].line] = true;
  }

  /// The furthest x on a diagonal x - y, searching forwards.
  Index& Forward(Index diagonal) { return furthest_[0][Slot(diagonal)]; }
  /// The smallest x on a diagonal, searching backwards.
  Index& Backward(Index diagonal) { return furthest_[1][Slot(diagonal)]; }
  std::size_t Slot(Index diagonal) const {
    return static_cast<std::size_t>(diagonal + static_cast<Index>(b_.size()) + 1);
  }

  /// The diagonals that a search has reached: every second one from the lowest to the highest.
  struct Diagonals {
    Index lowest, highest;

    /// One step more, within the rectangle; what is beside the new diagonals is set to `unreached`.
    template <class Reached>
    void Widen(Index least, Index most, Reached reached, Index unreached) {
      if (lowest > least) {
        reached(--lowest - 1) = unreached;
      } else {
        ++lowest;
      }
      if (highest < most) {
        reached(++highest + 1) = unreached;
      } else {
        --highest;
      }
    }
    bool Has(Index diagonal) const { return diagonal >= lowest && diagonal <= highest; }
  };

  /// A point on a path from the first corner to the last, which is neither of them. Both texts have lines
  /// there, and they begin and end with different ones.
  Point Middle(Index aFirst, Index aEnd, Index bFirst, Index bEnd) {
    const Index least = aFirst - bEnd;
    const Index most = aEnd - bFirst;
    const Index start = aFirst - bFirst;
    const Index end = aEnd - bEnd;
    const bool odd = ((start - end) & 1) != 0;
    Diagonals forward{start, start};
    Diagonals backward{end, end};
    Forward(start) = aFirst;
    Backward(end) = aEnd;
    for (int steps = 1;; ++steps) {
      forward.Widen(
          least, most, [&](Index d) -> Index& { return Forward(d); }, -1);
      for (Index d = forward.highest; d >= forward.lowest; d -= 2) {
        Index x = std::max(Forward(d - 1) + 1, Forward(d + 1));
        while (x < aEnd && x - d < bEnd && Same(x, x - d)) ++x;
        Forward(d) = x;
        if (odd && backward.Has(d) && Backward(d) <= x) return {x, x - d};
      }
      constexpr Index kUnreached = std::numeric_limits<Index>::max();
      backward.Widen(
          least, most, [&](Index d) -> Index& { return Backward(d); }, kUnreached);
      for (Index d = backward.highest; d >= backward.lowest; d -= 2) {
        Index x = std::min(Backward(d - 1), Backward(d + 1) - 1);
        while (x > aFirst && x - d > bFirst && Same(x - 1, x - d - 1)) --x;
        Backward(d) = x;
        if (!odd && forward.Has(d) && x <= Forward(d)) return {x, x - d};
      }
      if (steps >= kMostSteps) return Furthest(forward, aEnd, bEnd);
    }
  }

  /// Where the search forwards has come closest to the last corner.
  Point Furthest(const Diagonals& forward, Index aEnd, Index bEnd) {
    Point furthest{0, 0};
    for (Index d = forward.highest; d >= forward.lowest; d -= 2) {
      const Index x = std::min({Forward(d), aEnd, bEnd + d});
      if (x + x - d > furthest.x + furthest.y) furthest = {x, x - d};
    }
    return furthest;
  }

  std::span<const SharedLine> a_;
  std::span<const SharedLine> b_;
  std::vector<bool>& removed_;
  std::vector<bool>& added_;
  std::array<std::vector<Index>, 2> furthest_;
};

}  // namespace

std::vector<std::string_view> SplitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  ForEachLine(text, [&lines](std::string_view line) { lines.push_back(line); });
  return lines;
}

std::vector<LineChange> CompareLines(std::span<const std::string_view> oldLines,
                                     std::span<const std::string_view> newLines) {
  std::size_t same = 0;
  const std::size_t shorter = std::min(oldLines.size(), newLines.size());
  while (same < shorter && oldLines[same] == newLines[same]) ++same;
  if (same == oldLines.size() && same == newLines.size()) return {};

  // A line that only one text has is changed, whatever else is: the search need not see it.
  struct Line {
    Index number;
    bool inNew = false;
  };
  std::unordered_map<std::string_view, Line> lines;
  for (const std::string_view line : oldLines.subspan(same)) {
    lines.try_emplace(line, Line{static_cast<Index>(lines.size())});
  }
  std::vector<bool> added(newLines.size());
  std::vector<SharedLine> sharedNew;
  for (std::size_t i = same; i < newLines.size(); ++i) {
    const auto found = lines.find(newLines[i]);
    added[i] = found == lines.end();
    if (added[i]) continue;
    found->second.inNew = true;
    sharedNew.push_back({i, found->second.number});
  }
  std::vector<bool> removed(oldLines.size());
  std::vector<SharedLine> sharedOld;
  for (std::size_t i = same; i < oldLines.size(); ++i) {
    const Line& line = lines.at(oldLines[i]);
    removed[i] = !line.inNew;
    if (line.inNew) sharedOld.push_back({i, line.number});
  }
  const Comparison comparison(sharedOld, sharedNew, removed, added);

  std::vector<LineChange> changes;
  for (std::size_t x = same, y = same; x < oldLines.size() || y < newLines.size(); ++x, ++y) {
    LineChange change{x, 0, y, 0};
    for (; x < oldLines.size() && removed[x]; ++x) ++change.oldCount;
    for (; y < newLines.size() && added[y]; ++y) ++change.newCount;
    if (change.oldCount + change.newCount > 0) changes.push_back(change);
  }
  return changes;
}

}  // namespace snip
