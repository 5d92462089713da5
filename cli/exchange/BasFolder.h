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
/// The order of the snippets, names that are no file names, and the paths of attachments are kept in a file
/// of its own beside them, which need not be there when the folder is read.

/// A file of the folder.
struct FolderFile {
  std::string name;  ///< UTF-8.
  std::string bytes;
};

inline constexpr std::string_view kBasIndex = "snippets.json";

/// Reads the folder's `.bas` files in the order of the index; those it does not list come behind it, in the
/// order of their names. `encoding` is that of the files. Throws Malformed for an index that is none.
Imported ReadBasFolder(const std::vector<FolderFile>& files, Encoding encoding, const CodePage& page);

/// The files to write, the index last.
std::vector<FolderFile> WriteBasFolder(std::span<const Snippet> snippets, const CodePage& page,
                                       ConversionReport& report);

}  // namespace snip
