#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "library/Library.h"

namespace snip {

// What a library file can hold. It has no escapes, so a line of a text that is a marker would end the text.

/// Why a library file cannot hold the snippet, for people: a line that the file format reserves, or a line
/// end in a text of one line. Nothing if it can.
std::optional<std::string> WhyNotHeld(const Snippet& snippet);

/// Whether the file format would read a snippet's name as the end of the list, and lose that snippet and all
/// after it.
bool EndsSnippetList(std::string_view name);

/// Drops trailing spaces of lines, which the file format does not keep; returns how many lines had some.
std::size_t DropTrailingSpaces(Snippet& snippet);

/// Whether a file of these snippets reads back as them, apart from trailing spaces of lines. Texts of a
/// version 1 file may have lines that are markers only in version 2.
bool ReadsBackWhole(std::span<const Snippet> snippets);

}  // namespace snip
