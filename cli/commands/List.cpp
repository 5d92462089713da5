#include "cli/commands/Commands.h"
#include "cli/commands/FoundLibraries.h"
#include "cli/exchange/Json.h"
#include "find/Tags.h"

namespace snip {
namespace {

class List : public Command {
 public:
  List(CLI::App& app, Session& session) : Command(app, session, "list", "list the snippets of a library") {
    AddLibrary(library_);
    AddFlag("-l,--long", details_, "with the first line of the description, and the attachment");
    AddOption("--tag", tag_, "TAG", "only snippets with that tag");
    AddJson();
  }

  ExitCode Run() override {
    const LibraryFile library(session_, library_);
    const Folding folding = FoldingOf(session_.page);
    const Needle tag(Tag(), folding);
    OrderedJson list = OrderedJson::array();
    for (std::size_t i = 0; i < library.snippets.size(); ++i) {
      const Snippet& snippet = library.snippets[i];
      if (tag_ && !HasTag(snippet.Description, tag, true, folding)) continue;
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
  /// Without the "#" that it may be given with.
  std::string Tag() const {
    const std::string tag = session_.Argument(tag_.value_or(""));
    return tag.starts_with('#') ? tag.substr(1) : tag;
  }

  std::string library_;
  std::optional<std::string> tag_;
  bool details_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeList(CLI::App& app, Session& session) {
  return std::make_unique<List>(app, session);
}

}  // namespace snip
