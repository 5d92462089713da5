#pragma once

#include <vector>

#include "cli/commands/Commands.h"

namespace snip {

/// Puts snippets behind those of a library. One that is there already, the same in all texts, is not put
/// there again; one of a name that is there is left out or gets a number, never overwrites. `outcome` counts.
void MergeSnippets(std::vector<Snippet>& into, std::vector<Snippet> from, SameName sameName,
                   const CodePage& page, Outcome& outcome);

/// Tells what came of a merge, an import or an export; `done` is what happened to those that were carried
/// over. The exit code says whether some were left out.
ExitCode Report(Session& session, const Outcome& outcome, const std::string& done, bool dryRun);

}  // namespace snip
