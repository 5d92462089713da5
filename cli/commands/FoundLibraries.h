#pragma once

#include <string>
#include <vector>

#include "cli/commands/Session.h"
#include "find/Finder.h"

namespace snip {

Folding FoldingOf(const CodePage& page);

/// Libraries for a search, named after their files; throws a Failure if one cannot be read.
std::vector<SearchedLibraryPtr> ReadSearchedLibraries(Session& session, const std::vector<std::string>& paths,
                                                      const Folding& folding);

}  // namespace snip
