#include "cli/commands/Commands.h"
#include "cli/files/SafeWrite.h"
#include "cli/records/SnippetRules.h"
#include "library/BnsFormat.h"
#include "cli/records/LibraryCheck.h"

namespace snip {

ExitCode Convert(Session& session, const ConvertOptions& options) {
  const FileBytes file = session.Read(options.library);
  for (const Fault& fault : CheckLibrary(file.view(), session.page)) {
    const bool noLibrary = fault.line == 1 && fault.severity == Severity::Error;
    if (noLibrary && std::holds_alternative<NotALibrary>(ReadBns(file.view()))) {
      throw MalformedFile(options.library, Malformed(1, fault.message));
    }
    if (!fault.lostOnSave) continue;
    const Failure failure = MalformedFile(options.library, Malformed(fault.line, fault.message));
    if (!session.lossy) {
      throw Failure(ExitCode::Refused,
                    failure.what() + std::string("; --lossy converts the rest all the same"));
    }
    session.terminal.Complain(failure.what());
  }
  auto contents = std::get<BnsContents>(ReadBns(file.view()));
  for (Snippet& snippet : contents.snippets) {
    DropLineEndBlanks(snippet);
    // What version 2 takes for its own was text in version 1.
    RequireHeld(snippet, session.page);
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
