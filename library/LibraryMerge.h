#pragma once

#include <span>
#include <string>
#include <vector>

#include "library/Library.h"

namespace snip {

struct MergedLibrary {
  std::vector<Snippet> snippets;  ///< Can be more than a library file can hold.
  /// What contradicted each other and needs a decision, for people; in the library's code page.
  std::vector<std::string> conflicts;
};

/// Merges two changed versions of a library: snippet by snippet, its name and its attachment as a whole, its
/// description and its code by lines.
///
/// Where both sides contradict each other, the snippet is there twice: "NAME" with our text and "NAME
/// (theirs)" with theirs; both have all changes that do not contradict each other. A snippet that one side
/// removed and the other changed stays. No text of a side is dropped without a conflict, unless the other
/// side removed or replaced it.
///
/// The snippets are in our order. A snippet that they added or moved comes after the one it follows in
/// theirs, and after those that we added or moved there.
MergedLibrary MergeLibraries(std::span<const Snippet> base, std::span<const Snippet> ours,
                             std::span<const Snippet> theirs);

}  // namespace snip
