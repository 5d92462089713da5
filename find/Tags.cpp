#include "find/Tags.h"

#include <algorithm>
#include <map>
#include <utility>

namespace snip {
namespace {

bool IsDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

}  // namespace

void ForEachTag(std::string_view description, const Folding& folding,
                const std::function<bool(std::string_view tag, TextRange place)>& take) {
  for (std::size_t at = description.find('#'); at < description.size(); at = description.find('#', at + 1)) {
    const std::size_t begin = at + 1;
    // The trail byte of a character may look like "#".
    const auto isWord = [&](std::size_t i) {
      return i < description.size() &&
             (folding.IsWord(description[i]) || !folding.BeginsCharacter(description, i));
    };
    if ((at > 0 && isWord(at - 1)) || !isWord(begin) || IsDigit(description[begin])) continue;
    std::size_t end = begin;
    while (isWord(end) || (end < description.size() && description[end] == '-' && isWord(end + 1))) ++end;
    if (!take(description.substr(begin, end - begin), {at, end})) return;
  }
}

bool IsTag(std::string_view tag, const Needle& wanted, bool whole) {
  return wanted.MatchesAt(tag, 0) && (!whole || tag.size() == wanted.folded().size());
}

bool HasTag(std::string_view description, const Needle& wanted, bool whole, const Folding& folding) {
  bool has = false;
  ForEachTag(description, folding, [&](std::string_view tag, TextRange) {
    has = IsTag(tag, wanted, whole);
    return !has;
  });
  return has;
}

std::vector<TagCount> CountTags(const std::vector<SearchedLibraryPtr>& libraries, const Folding& folding) {
  struct Counted {
    TagCount tag;
    std::size_t snippets = 0;  ///< The index of the last snippet counted for this tag, plus one.
  };
  std::map<std::string, Counted> counts;
  std::size_t snippets = 0;
  for (const SearchedLibraryPtr& library : libraries) {
    for (std::size_t i = 0; i < library->size(); ++i) {
      ++snippets;
      ForEachTag((*library)[i].Description, folding, [&](std::string_view tag, TextRange) {
        Counted& counted = counts[folding.Fold(tag)];
        if (counted.tag.count == 0) counted.tag.tag = tag;
        if (std::exchange(counted.snippets, snippets) != snippets) ++counted.tag.count;
        return true;
      });
    }
  }
  std::vector<TagCount> tags;
  tags.reserve(counts.size());
  for (auto& [folded, counted] : counts) tags.push_back(std::move(counted.tag));
  return tags;
}

}  // namespace snip
