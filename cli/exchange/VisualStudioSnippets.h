#pragma once

#include <span>
#include <string>
#include <string_view>

#include "cli/exchange/SnippetImporter.h"

namespace snip {

/// Visual Studio's `.snippet` files: XML, several snippets a file.
///
/// Title is the name, Description the description, Code the code. The attachment's path is the HelpUrl, which
/// Visual Studio does not use; one with a scheme is not a path. Control characters that XML
/// cannot hold are lost.

/// Reads a file; throws Malformed.
Imported ReadVisualStudioSnippets(std::string_view bytes, const ImportOptions& options, const CodePage& page);

/// Writes a file. `Delimiter` becomes a character that the snippet's code does not contain, so that code
/// stays code, and its fields are declared as placeholders; with `asTemplates` it is "$" and each $name$ in
/// the code is declared as a placeholder.
std::string WriteVisualStudioSnippets(std::span<const Snippet> snippets, bool asTemplates,
                                      const CodePage& page, ConversionReport& report);

}  // namespace snip
