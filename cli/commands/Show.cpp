#include "cli/commands/Commands.h"
#include "cli/exchange/Json.h"

namespace snip {
namespace {

class Show : public Command {
 public:
  Show(CLI::App& app, Session& session) : Command(app, session, "show", "print a snippet") {
    AddLibrary(library_);
    AddSnippet(snippet_);
    AddFlag("-c,--code", codeOnly_, "only the code");
    AddFlag("-d,--description", descriptionOnly_, "only the description");
    AddFlag("-a,--attachment", attachmentOnly_, "only the path of the attached file");
    Exclude("--code", "--description");
    Exclude("--code", "--attachment");
    Exclude("--description", "--attachment");
    AddFlag("--raw", raw_, "the library's bytes: in its code page, lines ending with CR LF");
    AddJson();
  }

  ExitCode Run() override {
    const LibraryFile library(session_, library_);
    const std::size_t position = library.Find(snippet_);
    const Snippet& snippet = library.snippets[position];
    if (session_.json) {
      session_.WriteLine(SnippetAsJson(snippet, position + 1, session_.page).dump(2));
    } else if (codeOnly_ || descriptionOnly_ || attachmentOnly_) {
      Write(codeOnly_ ? snippet.Code : descriptionOnly_ ? snippet.Description : snippet.Attachment);
    } else {
      Write(snippet.Name);
      if (!snippet.Attachment.empty()) Write("Attachment: " + snippet.Attachment);
      if (!snippet.Description.empty()) Write(snippet.Description);
      Write("");
      Write(snippet.Code);
    }
    return ExitCode::Done;
  }

 private:
  void Write(std::string_view ansi) {
    if (raw_) {
      session_.terminal.WriteBytes(ansi);
      session_.terminal.WriteBytes("\r\n");
    } else {
      session_.WriteLine(ToForeignText(ansi, session_.page).text);
    }
  }

  std::string library_;
  std::string snippet_;
  bool codeOnly_ = false;
  bool descriptionOnly_ = false;
  bool attachmentOnly_ = false;
  bool raw_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeShow(CLI::App& app, Session& session) {
  return std::make_unique<Show>(app, session);
}

}  // namespace snip
