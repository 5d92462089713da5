#include "history/ChangeCounts.h"

#include "library/LibraryDifference.h"

namespace snip {

ChangeCounts CountChanges(std::span<const Snippet> older, std::span<const Snippet> newer) {
  ChangeCounts counts;
  for (const SnippetChange& change : CompareLibraries(older, newer)) {
    ++(!change.oldPosition ? counts.added : !change.newPosition ? counts.removed : counts.changed);
  }
  return counts;
}

std::string TextOf(const ChangeCounts& counts) {
  std::string text;
  const auto add = [&](char mark, std::size_t count) {
    if (count > 0) text += (text.empty() ? "" : " ") + std::string(1, mark) + std::to_string(count);
  };
  add('+', counts.added);
  add('-', counts.removed);
  add('~', counts.changed);
  return text.empty() ? "=" : text;
}

}  // namespace snip
