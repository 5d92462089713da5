#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/exchange/SnippetImporter.h"

namespace snip {

/// A folder of `.bas` files, one for each snippet: the description as a block of comments, an empty line, the
/// code; in the library's code page, lines ending with CR LF.
///
/// An index file holds the order of the snippets, names that cannot be file names, and the paths of
/// attachments. It may be missing when the folder is read.

/// A file of the folder.
struct FolderFile {
  std::string name;  ///< UTF-8.
  std::string bytes;
};

inline constexpr std::string_view kBasIndex = "snippets.json";

/// Reads the folder's `.bas` files in the order of the index, then the others in the order of their names.
/// `encoding` is that of the files. Throws Malformed for a damaged index.
Imported ReadBasFolder(const std::vector<FolderFile>& files, Encoding encoding, const CodePage& page);

/// The files to write, the index last.
std::vector<FolderFile> WriteBasFolder(std::span<const Snippet> snippets, const CodePage& page,
                                       ConversionReport& report);

}  // namespace snip
