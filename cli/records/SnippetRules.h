#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "cli/text/CodePage.h"
#include "library/Library.h"

namespace snip {

/// Why a library file cannot hold the snippet: a line that the format takes for its own, or a line end in a
/// text of one line. Nothing when it can.
std::optional<std::string> WhyNotHeld(const Snippet& snippet);

/// Throws a Failure that says so where a library file cannot hold the snippet.
void RequireHeld(const Snippet& snippet, const CodePage& page);

/// Takes the blanks off line ends that the format does not keep; how many lines had some.
std::size_t DropLineEndBlanks(Snippet& snippet);

}  // namespace snip
