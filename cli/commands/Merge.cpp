#include "cli/commands/LibraryFile.h"
#include "cli/commands/MergeSnippets.h"

namespace snip {

ExitCode Merge(Session& session, const MergeOptions& options) {
  LibraryFile library = options.create ? LibraryFile::ForChangeOrNew(session, options.library)
                                       : LibraryFile::ForChange(session, options.library);
  Outcome outcome;
  for (const std::string& path : options.sources) {
    LibraryFile source(session, path);
    // A library of version 1 may hold what the current one cannot.
    Intake intake(session.page);
    for (Snippet& snippet : source.snippets) intake.AddConverted(std::move(snippet));
    Imported imported = intake.Finish();
    for (const LossNote& note : imported.outcome.notes()) {
      outcome.Note(note.loss, note.snippet, note.count, note.detail);
    }
    MergeSnippets(library.snippets, std::move(imported.snippets), options.sameName, session.page, outcome);
  }
  if (!options.dryRun && outcome.carried > 0) library.Save();
  return Report(session, outcome, "merged", options.dryRun);
}

}  // namespace snip
