#include "cli/commands/Commands.h"
#include "cli/commands/LibraryFile.h"
#include "cli/commands/SnippetJson.h"

namespace snip {

ExitCode List(Session& session, const ListOptions& options) {
  const LibraryFile library(session, options.library);
  OrderedJson list = OrderedJson::array();
  for (std::size_t i = 0; i < library.snippets.size(); ++i) {
    const Snippet& snippet = library.snippets[i];
    if (session.json) {
      OrderedJson entry = SnippetAsJson(snippet, i + 1, session.page);
      entry.erase("code");
      list.push_back(std::move(entry));
      continue;
    }
    session.WriteLine(session.page.ToUtf8(snippet.Name));
    if (!options.details) continue;
    const std::string description = session.page.ToUtf8(snippet.Description);
    session.WriteLine("    " + description.substr(0, description.find_first_of("\r\n")));
    if (!snippet.Attachment.empty())
      session.WriteLine("    Attached: " + session.page.ToUtf8(snippet.Attachment));
  }
  if (session.json) session.WriteLine(list.dump(2));
  return ExitCode::Done;
}

}  // namespace snip
