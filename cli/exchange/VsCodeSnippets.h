#pragma once

#include <span>
#include <string>
#include <string_view>

#include "cli/exchange/SnippetImporter.h"

namespace snip {

/// VS Code's snippet files: JSON, one object with a member for each snippet.
///
/// The member's name is the snippet's, `body` the code and `description` the description; both are an array
/// of lines or one text. The format has no attachments: their paths are in a second file, an object of names
/// and paths.

/// Reads a file; `attachments` are the bytes of the second file, or empty. Throws Malformed.
Imported ReadVsCodeSnippets(std::string_view bytes, std::string_view attachments,
                            const ImportOptions& options, const CodePage& page);

struct VsCodeFiles {
  std::string snippets;
  std::string attachments;  ///< The bytes of the second file; empty if no snippet has an attachment.
};

/// Writes a file. `$`, `}` and `\` are escaped, so that code stays code; with `asTemplates` the code is the
/// body's text as it is. A repeated name gets a number.
VsCodeFiles WriteVsCodeSnippets(std::span<const Snippet> snippets, bool asTemplates, const CodePage& page,
                                ConversionReport& report);

}  // namespace snip
