#include "cli/commands/Commands.h"
#include "cli/commands/LibraryFile.h"
#include "cli/commands/SnippetTexts.h"

namespace snip {

ExitCode Add(Session& session, const AddOptions& options) {
  LibraryFile library = options.create ? LibraryFile::ForChangeOrNew(session, options.library)
                                       : LibraryFile::ForChange(session, options.library);
  Snippet snippet{.Name = session.Argument(options.name), .Attachment = {}, .Code = {}, .Description = {}};
  TakeTexts(session, options.texts, snippet);
  RequireHeld(session, snippet);
  library.CheckRoom(1);
  if (!options.sameName) {
    CheckNameIsFree(library.snippets, snippet.Name, library.snippets.size(), session.page);
  }
  library.snippets.push_back(std::move(snippet));
  library.Save();
  return ExitCode::Done;
}

}  // namespace snip
