#include "cli/commands/Commands.h"
#include "cli/files/SafeWrite.h"
#include "cli/commands/LibraryFile.h"
#include "library/BnsCheck.h"

namespace snip {

ExitCode Convert(Session& session, const ConvertOptions& options) {
  const FileBytes file = session.Read(options.library);
  BnsContents contents = ReadContents(session, options.library, file.view());
  for (const Problem& problem : CheckLibrary(file.view(), session.page)) {
    if (!problem.lostOnSave) continue;
    const Failure failure =
        MalformedFile(options.library, Malformed(problem.line, session.page.ToUtf8(problem.message)));
    if (!session.lossy) {
      throw Failure(ExitCode::Refused, failure.what() + std::string("; --lossy converts the rest"));
    }
    session.terminal.Complain(failure.what());
  }
  for (Snippet& snippet : contents.snippets) {
    // Version 2 reserves lines that are text in version 1.
    RequireHeld(session, snippet);
  }
  const std::string bytes = WriteBns(contents.snippets);
  if (options.output == "-" || (options.output.empty() && options.library == "-")) {
    session.terminal.WriteBytes(bytes);
  } else if (!options.output.empty()) {
    WriteFileSafely(options.output, bytes, Existing::Keep);
  } else if (bytes != file.view()) {
    WriteFileSafely(options.library, bytes, Existing::Replace);
  }
  return ExitCode::Done;
}

}  // namespace snip
