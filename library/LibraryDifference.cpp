#include "library/LibraryDifference.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "library/LineDifference.h"
#include "platform/Text.h"

namespace snip {
namespace {

class Matching {
 public:
  Matching(std::span<const Snippet> older, std::span<const Snippet> newer)
      : older_(older), newer_(newer), oldLeft_(older.size()), newLeft_(newer.size()), found_(older.size()) {
    std::iota(oldLeft_.begin(), oldLeft_.end(), std::size_t{0});
    std::iota(newLeft_.begin(), newLeft_.end(), std::size_t{0});
  }

  /// Matches the snippets whose name is there once in both libraries: nearly all, and sorting takes longer.
  void MatchUniqueNames() {
    struct Places {
      std::size_t oldCount = 0, newCount = 0, oldPosition = 0;
    };
    std::unordered_map<std::string_view, Places> names(older_.size());
    for (std::size_t i = 0; i < older_.size(); ++i) {
      Places& places = names[older_[i].Name];
      ++places.oldCount;
      places.oldPosition = i;
    }
    std::vector<Places*> placesOfNew(newer_.size());
    for (std::size_t i = 0; i < newer_.size(); ++i) {
      const auto found = names.find(newer_[i].Name);
      if (found == names.end()) continue;
      placesOfNew[i] = &found->second;
      ++found->second.newCount;
    }
    for (std::size_t i = 0; i < newer_.size(); ++i) {
      const Places* const places = placesOfNew[i];
      if (places == nullptr || places->oldCount > 1 || places->newCount > 1) continue;
      found_[places->oldPosition] = i;
    }
    DropMatched();
  }

  /// Matches the snippets left that have equal keys, in the order of their positions.
  template <class KeyOf>
  void MatchBy(KeyOf keyOf) {
    const auto sort = [&](std::vector<std::size_t>& left, std::span<const Snippet> snippets) {
      std::stable_sort(left.begin(), left.end(),
                       [&](std::size_t a, std::size_t b) { return keyOf(snippets[a]) < keyOf(snippets[b]); });
    };
    sort(oldLeft_, older_);
    sort(newLeft_, newer_);
    auto newer = newLeft_.begin();
    for (const std::size_t position : oldLeft_) {
      const auto key = keyOf(older_[position]);
      while (newer != newLeft_.end() && keyOf(newer_[*newer]) < key) ++newer;
      if (newer == newLeft_.end()) break;
      if (keyOf(newer_[*newer]) == key) found_[position] = *newer++;
    }
    DropMatched();
  }

  /// Matches the snippets left that have at least half of their text in common, the most similar first.
  void MatchSimilar() {
    if (oldLeft_.empty() || newLeft_.empty()) return;
    std::unordered_map<std::string_view, std::vector<std::size_t>> oldWithLine;
    std::unordered_map<std::size_t, std::size_t> oldSizes;
    for (const std::size_t position : oldLeft_) {
      for (const std::string_view line : LinesOf(older_[position])) {
        oldWithLine[line].push_back(position);
        oldSizes[position] += line.size();
      }
    }
    // (share of text, old position, new position)
    std::vector<std::tuple<double, std::size_t, std::size_t>> pairs;
    for (const std::size_t position : newLeft_) {
      std::size_t size = 0;
      std::map<std::size_t, std::size_t> shared;  // characters by old position
      for (const std::string_view line : LinesOf(newer_[position])) {
        size += line.size();
        const auto found = oldWithLine.find(line);
        // A line that many snippets have does not make two of them similar, and counting it would take long.
        constexpr std::size_t kMostSnippets = 32;
        if (found == oldWithLine.end() || found->second.size() > kMostSnippets) continue;
        for (const std::size_t old : found->second) shared[old] += line.size();
      }
      for (const auto& [old, characters] : shared) {
        const double share =
            2.0 * static_cast<double>(characters) / static_cast<double>(size + oldSizes[old]);
        if (share >= 0.5) pairs.emplace_back(-share, old, position);
      }
    }
    std::sort(pairs.begin(), pairs.end());
    std::vector<bool> taken(newer_.size());
    for (const auto& [share, old, position] : pairs) {
      if (found_[old] || taken[position]) continue;
      found_[old] = position;
      taken[position] = true;
    }
  }

  std::vector<std::optional<std::size_t>> Take() { return std::move(found_); }

 private:
  /// The different lines of the description and the code, without the spaces around them.
  static std::vector<std::string_view> LinesOf(const Snippet& snippet) {
    std::vector<std::string_view> lines = SplitLines(snippet.Code);
    for (const std::string_view line : SplitLines(snippet.Description)) lines.push_back(line);
    for (std::string_view& line : lines) line = Trim(line);
    std::sort(lines.begin(), lines.end());
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    return lines;
  }

  void DropMatched() {
    std::vector<bool> matched(newer_.size());
    for (const std::size_t position : oldLeft_) {
      if (found_[position]) matched[*found_[position]] = true;
    }
    std::erase_if(oldLeft_, [&](std::size_t position) { return found_[position].has_value(); });
    std::erase_if(newLeft_, [&](std::size_t position) { return matched[position]; });
    // Equal keys are matched in order.
    std::sort(oldLeft_.begin(), oldLeft_.end());
    std::sort(newLeft_.begin(), newLeft_.end());
  }

  std::span<const Snippet> older_;
  std::span<const Snippet> newer_;
  std::vector<std::size_t> oldLeft_;
  std::vector<std::size_t> newLeft_;
  std::vector<std::optional<std::size_t>> found_;
};

}  // namespace

std::vector<std::optional<std::size_t>> MatchSnippets(std::span<const Snippet> older,
                                                      std::span<const Snippet> newer, Renames renames) {
  const auto texts = [](const Snippet& s) { return std::tie(s.Code, s.Description, s.Attachment); };
  Matching matching(older, newer);
  matching.MatchUniqueNames();
  matching.MatchBy([&](const Snippet& s) { return std::tuple_cat(std::tie(s.Name), texts(s)); });
  matching.MatchBy([](const Snippet& s) { return std::string_view(s.Name); });
  if (renames == Renames::Follow) {
    matching.MatchBy(texts);
    matching.MatchSimilar();
  }
  return matching.Take();
}

std::vector<bool> FindMoved(std::span<const std::optional<std::size_t>> positions) {
  std::vector<std::size_t> ends;  // by length: where the subsequence with the lowest last position ends
  std::vector<std::optional<std::size_t>> before(positions.size());
  for (std::size_t i = 0; i < positions.size(); ++i) {
    if (!positions[i]) continue;
    const auto end = std::lower_bound(ends.begin(), ends.end(), *positions[i],
                                      [&](std::size_t a, std::size_t b) { return *positions[a] < b; });
    if (end != ends.begin()) before[i] = *std::prev(end);
    if (end == ends.end()) {
      ends.push_back(i);
    } else {
      *end = i;
    }
  }
  std::vector<bool> moved(positions.size());
  for (std::size_t i = 0; i < positions.size(); ++i) moved[i] = positions[i].has_value();
  for (std::optional<std::size_t> i = ends.empty() ? std::nullopt : std::optional(ends.back()); i;
       i = before[*i]) {
    moved[*i] = false;
  }
  return moved;
}

std::vector<SnippetChange> CompareLibraries(std::span<const Snippet> older, std::span<const Snippet> newer) {
  const auto became = MatchSnippets(older, newer);
  const auto moved = FindMoved(became);
  std::vector<std::optional<std::size_t>> was(newer.size());
  for (std::size_t i = 0; i < older.size(); ++i) {
    if (became[i]) was[*became[i]] = i;
  }
  std::vector<SnippetChange> changes;
  const auto addRemoved = [&](std::size_t position) {
    for (; position < older.size() && !became[position]; ++position) {
      changes.push_back({.oldPosition = position, .newPosition = {}});
    }
  };
  addRemoved(0);
  for (std::size_t i = 0; i < newer.size(); ++i) {
    const SnippetChange unchanged{.oldPosition = was[i], .newPosition = i};
    SnippetChange change = unchanged;
    if (was[i]) {
      const Snippet& old = older[*was[i]];
      change.renamed = old.Name != newer[i].Name;
      change.moved = moved[*was[i]];
      change.attachment = old.Attachment != newer[i].Attachment;
      change.description = old.Description != newer[i].Description;
      change.code = old.Code != newer[i].Code;
    }
    if (!was[i] || change != unchanged) changes.push_back(change);
    if (was[i]) addRemoved(*was[i] + 1);
  }
  return changes;
}

}  // namespace snip
