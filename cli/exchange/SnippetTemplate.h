#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace snip {

/// The text of a VS Code snippet body, taken apart.
struct TemplateText {
  std::string text;              ///< Escapes resolved, placeholders exchanged.
  std::size_t placeholders = 0;  ///< How many became their default texts.
};

/// Reads the body's syntax: `$1`, `${1:default}`, `${1|one,two|}`, `$NAME`, `${NAME:default}`,
/// transformations, and the escapes `\$`, `\}` and `\\`. Later mentions of a placeholder take the default of
/// the first that has one; a variable without a default becomes nothing. A "$" before anything else is a "$".
/// With `asFields`, placeholders become fields of the code, where fields can stand for them; else they become
/// their default texts.
/// Throws std::length_error where placeholders in defaults of placeholders make more than a megabyte.
TemplateText ReadSnippetTemplate(std::string_view body, bool asFields);

/// Code as a body that inserts exactly this code, with placeholders for its fields.
std::string WriteSnippetTemplate(std::string_view code);

}  // namespace snip
