#include "cli/commands/Commands.h"
#include "cli/commands/LibraryFile.h"
#include "cli/commands/SnippetTexts.h"

namespace snip {

ExitCode Rename(Session& session, const RenameOptions& options) {
  LibraryFile library = LibraryFile::ForChange(session, options.library);
  const std::size_t position = library.Find(options.snippet);
  Snippet& snippet = library.snippets[position];
  snippet.Name = session.Argument(options.name);
  RequireHeld(session, snippet);
  if (!options.sameName) CheckNameIsFree(library.snippets, snippet.Name, position, session.page);
  library.Save();
  return ExitCode::Done;
}

}  // namespace snip
