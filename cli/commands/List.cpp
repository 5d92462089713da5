#include "cli/commands/Commands.h"
#include "cli/exchange/Json.h"

namespace snip {
namespace {

class List : public Command {
 public:
  List(CLI::App& app, Session& session) : Command(app, session, "list", "list the snippets of a library") {
    AddLibrary(library_);
    AddFlag("-l,--long", details_, "with the first line of the description, and the attachment");
    AddJson();
  }

  ExitCode Run() override {
    const LibraryFile library(session_, library_);
    OrderedJson list = OrderedJson::array();
    for (std::size_t i = 0; i < library.snippets.size(); ++i) {
      const Snippet& snippet = library.snippets[i];
      if (session_.json) {
        OrderedJson entry = SnippetAsJson(snippet, i + 1, session_.page);
        entry.erase("code");
        list.push_back(std::move(entry));
        continue;
      }
      session_.WriteLine(session_.page.ToUtf8(snippet.Name));
      if (!details_) continue;
      const std::string description = session_.page.ToUtf8(snippet.Description);
      session_.WriteLine("    " + description.substr(0, description.find_first_of("\r\n")));
      if (snippet.Attachment.empty()) continue;
      session_.WriteLine("    Attachment: " + session_.page.ToUtf8(snippet.Attachment));
    }
    if (session_.json) session_.WriteLine(list.dump(2));
    return ExitCode::Done;
  }

 private:
  std::string library_;
  bool details_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeList(CLI::App& app, Session& session) {
  return std::make_unique<List>(app, session);
}

}  // namespace snip
