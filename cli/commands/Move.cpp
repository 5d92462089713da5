#include <algorithm>
#include <filesystem>
#include <utility>

#include "cli/commands/Commands.h"
#include "cli/commands/LibraryFile.h"
#include "cli/commands/SnippetTexts.h"
#include "cli/files/Paths.h"

namespace snip {
namespace {

/// The snippet is written where it goes before it is taken from where it was: should the second not succeed,
/// it is there twice rather than nowhere.
void MoveInto(Session& session, LibraryFile& from, std::size_t position, const std::string& into) {
  std::error_code ignored;
  if (std::filesystem::equivalent(ToPath(from.path()), ToPath(into), ignored)) {
    throw Failure(ExitCode::Usage, "the snippet is in that library already");
  }
  LibraryFile to = LibraryFile::ForChange(session, into);
  to.CheckRoom(1);
  CheckNameIsFree(to.snippets, from.snippets[position].Name, to.snippets.size(), session.page);
  to.snippets.push_back(std::move(from.snippets[position]));
  from.snippets.erase(from.snippets.begin() + static_cast<std::ptrdiff_t>(position));
  to.Save();
  from.Save();
}

void MoveTo(std::vector<Snippet>& snippets, std::size_t position, std::size_t target) {
  const auto at = [&](std::size_t index) { return snippets.begin() + static_cast<std::ptrdiff_t>(index); };
  if (target <= position) {
    std::rotate(at(target), at(position), at(position + 1));
  } else {
    std::rotate(at(position), at(position + 1), at(target));
  }
}

}  // namespace

ExitCode Move(Session& session, const MoveOptions& options) {
  LibraryFile library = LibraryFile::ForChange(session, options.library);
  const std::size_t position = library.Find(options.snippet);
  if (options.into) {
    MoveInto(session, library, position, *options.into);
    return ExitCode::Done;
  }
  // In front of which snippet it goes, counted while it is still where it was.
  std::size_t target = position;
  if (options.before) target = library.Find(*options.before);
  if (options.after) target = library.Find(*options.after) + 1;
  if (options.position) {
    if (*options.position < 1 || *options.position > library.snippets.size()) {
      throw Failure(ExitCode::Usage,
                    "the library has the positions 1 to " + std::to_string(library.snippets.size()));
    }
    target = *options.position - 1;
    if (target > position) ++target;
  }
  MoveTo(library.snippets, position, target);
  library.Save();
  return ExitCode::Done;
}

}  // namespace snip
