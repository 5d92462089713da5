#include "cli/commands/SnippetTexts.h"

namespace snip {

void TakeTexts(Session& session, const SnippetTexts& texts, Snippet& snippet) {
  const auto lines = [&](const std::string& utf8) { return WithCrLf(session.Argument(utf8)).text; };
  if (texts.code) snippet.Code = lines(*texts.code);
  if (texts.codeFile) snippet.Code = session.TextOfFile(*texts.codeFile, texts.encoding);
  if (texts.description) snippet.Description = lines(*texts.description);
  if (texts.descriptionFile) snippet.Description = session.TextOfFile(*texts.descriptionFile, texts.encoding);
  if (texts.attachment) snippet.Attachment = session.Argument(*texts.attachment);
}

void CheckNameIsFree(const std::vector<Snippet>& snippets, const std::string& name, std::size_t position,
                     const CodePage& page) {
  for (std::size_t i = 0; i < snippets.size(); ++i) {
    if (i == position || snippets[i].Name != name) continue;
    throw Failure(ExitCode::Refused,
                  "there is a snippet \"" + page.ToUtf8(name) + "\" already; --same-name allows another");
  }
}

}  // namespace snip
