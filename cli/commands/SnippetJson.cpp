#include "cli/commands/SnippetJson.h"

#include "cli/exchange/Exchange.h"

namespace snip {

OrderedJson SnippetAsJson(const Snippet& snippet, std::size_t position, const CodePage& page) {
  std::size_t ignored = 0;
  return {{"position", position},
          {"name", page.ToUtf8(snippet.Name)},
          {"attachment", page.ToUtf8(snippet.Attachment)},
          {"description", ToForeignText(snippet.Description, page, ignored)},
          {"code", ToForeignText(snippet.Code, page, ignored)}};
}

}  // namespace snip
