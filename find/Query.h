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
  /// A quoted text, which has to match as a whole. For a tag: it is complete, so longer tags do not match.
  bool phrase = false;
  bool excluded = false;  ///< Snippets that match it are left out.
  Needle needle;
};

/// What to search for: `word`, `"a phrase"`, `#tag`, `name:word`, `code:word` and `in:library`, quoted or
/// not. A snippet has to match all of them, but only one of several libraries. `-` before a term excludes its
/// matches.
struct Query {
  std::vector<QueryTerm> terms;

  bool empty() const { return terms.empty(); }
};

/// Every text is a query: a term that is not complete yet, while it is being typed, has no effect. `folding`
/// must outlive the query.
Query ParseQuery(std::string_view text, const Folding& folding);

/// Whether `wider` finds everything that `narrower` does. May be false although it does.
bool IsNarrower(const Query& narrower, const Query& wider);

}  // namespace snip
