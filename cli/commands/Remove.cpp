#include <functional>
#include <set>

#include "cli/commands/Commands.h"
#include "cli/commands/LibraryFile.h"

namespace snip {

ExitCode Remove(Session& session, const RemoveOptions& options) {
  LibraryFile library = LibraryFile::ForChange(session, options.library);
  // All are found before the first goes, and the last goes first: positions stay what they were.
  std::set<std::size_t, std::greater<>> positions;
  for (const std::string& which : options.snippets) positions.insert(library.Find(which));
  for (const std::size_t position : positions) {
    library.snippets.erase(library.snippets.begin() + static_cast<std::ptrdiff_t>(position));
  }
  library.Save();
  return ExitCode::Done;
}

}  // namespace snip
