#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "find/Needle.h"

namespace snip {

/// One condition of a query.
struct QueryTerm {
  enum class Where { Anywhere, Name, Code, Tag, Library };

  Where where = Where::Anywhere;
  /// Was in quotes: all of it has to be there as it is. Of a tag: has ended, and no longer tag is meant.
  bool phrase = false;
  bool excluded = false;  ///< Snippets that have it are not wanted.
  Needle needle;
};

/// What is looked for: `word`, `"a phrase"`, `#tag`, `name:word`, `code:word` and `in:library`, in quotes or
/// not. All have to be there, of several libraries any one. `-` before one excludes what has it.
struct Query {
  std::vector<QueryTerm> terms;

  bool empty() const { return terms.empty(); }
};

/// Any text is a query: what is not complete yet, as it is being typed, asks for nothing. `folding` must
/// outlive the query.
Query ParseQuery(std::string_view text, const Folding& folding);

/// Whether all that `narrower` finds is found by `wider`, too, as far as that can be told from their words.
bool IsNarrower(const Query& narrower, const Query& wider);

}  // namespace snip
