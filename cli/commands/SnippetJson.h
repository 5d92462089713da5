#pragma once

#include <cstddef>

#include "cli/exchange/Json.h"
#include "cli/text/CodePage.h"
#include "library/Library.h"

namespace snip {

/// A snippet for scripts; `position` counts from 1, lines end with LF.
OrderedJson SnippetAsJson(const Snippet& snippet, std::size_t position, const CodePage& page);

}  // namespace snip
