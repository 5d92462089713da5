#include "cli/commands/Commands.h"
#include "cli/commands/LibraryFile.h"
#include "cli/commands/SnippetJson.h"

namespace snip {
namespace {

void WriteText(Session& session, std::string_view ansi) {
  std::size_t ignored = 0;
  session.WriteLine(ToForeignText(ansi, session.page, ignored));
}

void WriteRaw(Session& session, std::string_view bytes) {
  session.terminal.WriteBytes(bytes);
  session.terminal.WriteBytes("\r\n");
}

}  // namespace

ExitCode Show(Session& session, const ShowOptions& options) {
  using What = ShowOptions::What;
  const LibraryFile library(session, options.library);
  const std::size_t position = library.Find(options.snippet);
  const Snippet& snippet = library.snippets[position];
  if (session.json) {
    session.WriteLine(SnippetAsJson(snippet, position + 1, session.page).dump(2));
    return ExitCode::Done;
  }
  const auto write = options.raw ? WriteRaw : WriteText;
  switch (options.what) {
    case What::Code:
      write(session, snippet.Code);
      break;
    case What::Description:
      write(session, snippet.Description);
      break;
    case What::Attachment:
      write(session, snippet.Attachment);
      break;
    case What::All:
      write(session, snippet.Name);
      if (!snippet.Attachment.empty()) write(session, "Attached: " + snippet.Attachment);
      if (!snippet.Description.empty()) write(session, snippet.Description);
      write(session, "");
      write(session, snippet.Code);
  }
  return ExitCode::Done;
}

}  // namespace snip
