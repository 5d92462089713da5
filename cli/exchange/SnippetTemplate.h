#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace snip {

/// A VS Code snippet body converted to text.
struct TemplateText {
  std::string text;              ///< With escapes resolved and placeholders replaced.
  std::size_t placeholders = 0;  ///< How many became their default texts.
};

/// Reads the body's syntax: `$1`, `${1:default}`, `${1|one,two|}`, `$NAME`, `${NAME:default}`,
/// transformations, and the escapes `\$`, `\}` and `\\`. Later mentions of a placeholder take the default of
/// the first that has one; a variable without a default becomes nothing. A "$" before anything else is a "$".
/// With `asFields`, placeholders become fields of the code if fields can represent them, otherwise their
/// default texts. Throws std::length_error if nested placeholders expand to more than a megabyte.
TemplateText ReadSnippetTemplate(std::string_view body, bool asFields);

/// Code as a body that inserts exactly this code, with placeholders for its fields.
std::string WriteSnippetTemplate(std::string_view code);

}  // namespace snip
