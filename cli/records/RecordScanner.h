#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

#include "library/BnsFormat.h"

namespace snip {

/// What lines of a library file are.
enum class Part { FirstLine, Name, Attachment, Description, DescriptionEnd, Code, CodeEnd, ListEnd, Rest };

/// Lines of a library file that belong together, with their ends.
struct PartLines {
  Part part = Part::FirstLine;
  std::size_t snippet = 0;  ///< Which snippet's, from 0; for the lines between snippets the one before.
  std::string_view lines;
};

/// How a library file ended.
enum class Ending {
  Marker,       ///< With the end of the list, behind a snippet.
  EmptyList,    ///< Without a snippet.
  Promise,      ///< Where a snippet was promised: the end of the list, or of the file, behind a "(.)".
  Description,  ///< The file ended inside a description or before it.
  Code,         ///< The file ended inside a code block.
};

struct ScannedFile {
  std::optional<BnsVersion> version;  ///< None where the first line names none; nothing else is read then.
  bool unixLines = false;             ///< LF alone ends lines.
  Ending ending = Ending::EmptyList;
  std::size_t snippets = 0;  ///< As many as ReadBns reads and omits.
};

/// Takes a library file apart without copying it, the same way as ReadBns. Blanks at line ends are still
/// there. `take` gets the file's lines from the first to the last, none twice; what it is given points into
/// `bytes`.
ScannedFile ScanRecords(std::string_view bytes, const std::function<void(const PartLines&)>& take);

/// The first of the lines without its end, and takes it off `rest`. Not for an empty `rest`.
std::string_view TakeLine(std::string_view& rest, bool unixLines);

}  // namespace snip
