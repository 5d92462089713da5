#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace snip {

/// The text of a VS Code snippet body, taken apart.
struct TemplateText {
  std::string text;              ///< Escapes resolved, placeholders exchanged for their default texts.
  std::size_t placeholders = 0;  ///< How many there were; without any, the text is plain code.
};

/// Reads the body's syntax: `$1`, `${1:default}`, `${1|one,two|}`, `$NAME`, `${NAME:default}`,
/// transformations, and the escapes `\$`, `\}` and `\\`. Later mentions of a placeholder take the default of
/// the first that has one; a variable without a default becomes nothing. A "$" before anything else is a "$".
/// Throws std::length_error where placeholders in defaults of placeholders make more than a megabyte.
TemplateText ReadSnippetTemplate(std::string_view body);

/// Code as a body that inserts exactly this code.
std::string EscapeForSnippetTemplate(std::string_view code);

}  // namespace snip
