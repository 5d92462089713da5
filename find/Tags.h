#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "find/NameMatch.h"
#include "find/SearchedLibrary.h"

namespace snip {

/// Calls `take` with each tag of a description, without its "#", and with its place, "#" included, until that
/// says false. A tag is a word that begins with a letter and has "#" directly before it.
void ForEachTag(std::string_view description, const Folding& folding,
                const std::function<bool(std::string_view tag, TextRange place)>& take);

/// Whether a tag is that one or, unless all of it is meant, begins with it.
bool IsTag(std::string_view tag, const Needle& wanted, bool whole);
bool HasTag(std::string_view description, const Needle& wanted, bool whole, const Folding& folding);

struct TagCount {
  std::string tag;        ///< As it is written where it was found first.
  std::size_t count = 0;  ///< Of snippets that have it.
};

/// The tags of all libraries, by name.
std::vector<TagCount> CountTags(const std::vector<SearchedLibraryPtr>& libraries, const Folding& folding);

}  // namespace snip
