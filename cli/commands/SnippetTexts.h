#pragma once

#include "cli/commands/Commands.h"
#include "library/Library.h"

namespace snip {

/// Puts the given texts into the snippet.
void TakeTexts(Session& session, const SnippetTexts& texts, Snippet& snippet);

/// Throws a Failure where another snippet has that name, apart from the one at `position`.
void CheckNameIsFree(const std::vector<Snippet>& snippets, const std::string& name, std::size_t position,
                     const CodePage& page);

}  // namespace snip
