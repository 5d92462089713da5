#include "library/LineMerge.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "library/LineDifference.h"

namespace snip {
namespace {

using Lines = std::vector<std::string_view>;

std::string Join(const Lines& lines) {
  std::string text;
  for (std::size_t i = 0; i < lines.size(); ++i) text.append(i == 0 ? "" : "\r\n").append(lines[i]);
  return text;
}

/// Lines of the base: from `first` to before `end`.
struct Region {
  std::size_t first;
  std::size_t end;

  bool Contradicts(const Region& other) const {
    return (first == other.first && end == other.end) || (first < other.end && other.first < end);
  }
};

Region RegionOf(const LineChange& change) {
  return {change.oldFirst, change.oldFirst + change.oldCount};
}

/// One side of a merge: its changes, of which those up to `next` are done.
class Side {
 public:
  Side(const Lines& base, std::string_view text)
      : base_(base), lines_(SplitLines(text)), changes_(CompareLines(base, lines_)) {}

  bool done() const { return next_ == changes_.size(); }
  Region next() const { return RegionOf(changes_[next_]); }

  /// Extends the region to the end of all changes that begin in it; true if there were any.
  bool Extend(Region& region) {
    const std::size_t before = last_;
    for (; last_ < changes_.size() && region.Contradicts(RegionOf(changes_[last_])); ++last_) {
      region.end = std::max(region.end, RegionOf(changes_[last_]).end);
    }
    return last_ > before;
  }

  /// The lines of this side in place of a region, to which it was extended; goes on to the next change.
  Lines Take(const Region& region, bool& changed) {
    Lines taken;
    std::size_t line = region.first;
    changed = next_ < last_;
    for (; next_ < last_; ++next_) {
      const LineChange& change = changes_[next_];
      Append(taken, base_, line, change.oldFirst);
      Append(taken, lines_, change.newFirst, change.newFirst + change.newCount);
      line = RegionOf(change).end;
    }
    Append(taken, base_, line, region.end);
    return taken;
  }

  static void Append(Lines& to, const Lines& from, std::size_t first, std::size_t end) {
    to.insert(to.end(), from.begin() + static_cast<std::ptrdiff_t>(first),
              from.begin() + static_cast<std::ptrdiff_t>(end));
  }

 private:
  const Lines& base_;
  Lines lines_;
  std::vector<LineChange> changes_;
  std::size_t next_ = 0;
  std::size_t last_ = 0;
};

}  // namespace

MergedText MergeWhole(std::string_view base, std::string_view ours, std::string_view theirs) {
  return {std::string(ours == base ? theirs : ours), std::string(theirs == base ? ours : theirs)};
}

MergedText MergeLines(std::string_view base, std::string_view ours, std::string_view theirs) {
  if (ours == theirs || ours == base || theirs == base) return MergeWhole(base, ours, theirs);
  const Lines baseLines = SplitLines(base);
  Side our(baseLines, ours);
  Side their(baseLines, theirs);
  Lines mergedOurs;
  Lines mergedTheirs;
  std::size_t line = 0;
  const auto keepUntil = [&](std::size_t end) {
    Side::Append(mergedOurs, baseLines, line, end);
    Side::Append(mergedTheirs, baseLines, line, end);
  };
  while (!our.done() || !their.done()) {
    // At the same place lines that are added come before lines that are replaced.
    const auto before = [](const Region& a, const Region& b) {
      return a.first != b.first ? a.first < b.first : a.end < b.end;
    };
    const bool startsWithOurs = their.done() || (!our.done() && before(our.next(), their.next()));
    Region region = startsWithOurs ? our.next() : their.next();
    keepUntil(region.first);
    // A change of one side may reach another one of the other side.
    for (bool more = true; more;) {
      more = our.Extend(region);
      more = their.Extend(region) || more;
    }
    bool oursChanged = false;
    bool theirsChanged = false;
    const Lines takenOurs = our.Take(region, oursChanged);
    const Lines takenTheirs = their.Take(region, theirsChanged);
    for (const std::string_view each : oursChanged ? takenOurs : takenTheirs) mergedOurs.push_back(each);
    for (const std::string_view each : theirsChanged ? takenTheirs : takenOurs) mergedTheirs.push_back(each);
    line = region.end;
  }
  keepUntil(baseLines.size());
  return {Join(mergedOurs), Join(mergedTheirs)};
}

}  // namespace snip
