#include "cli/commands/Commands.h"
#include "cli/commands/LibraryFile.h"
#include "cli/commands/SnippetTexts.h"

namespace snip {

ExitCode Edit(Session& session, const EditOptions& options) {
  LibraryFile library = LibraryFile::ForChange(session, options.library);
  Snippet& snippet = library.snippets[library.Find(options.snippet)];
  TakeTexts(session, options.texts, snippet);
  library.CheckHeld(snippet);
  library.Save();
  return ExitCode::Done;
}

}  // namespace snip
