#include "cli/commands/Commands.h"
#include "cli/commands/LibraryFile.h"
#include "cli/commands/SnippetTexts.h"

namespace snip {

ExitCode Edit(Session& session, const EditOptions& options) {
  const SnippetTexts& texts = options.texts;
  if (!texts.code && !texts.codeFile && !texts.description && !texts.descriptionFile && !texts.attachment) {
    throw Failure(ExitCode::Usage, "edit is told nothing to change");
  }
  LibraryFile library = LibraryFile::ForChange(session, options.library);
  Snippet& snippet = library.snippets[library.Find(options.snippet)];
  TakeTexts(session, texts, snippet);
  RequireHeld(session, snippet);
  library.Save();
  return ExitCode::Done;
}

}  // namespace snip
