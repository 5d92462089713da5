#include "cli/commands/Commands.h"

namespace snip {
namespace {

class Add : public SnippetTextCommand {
 public:
  Add(CLI::App& app, Session& session)
      : SnippetTextCommand(app, session, "add", "add a snippet at the end of a library") {
    AddLibrary(library_);
    AddText("NAME", name_, "the new snippet's name");
    AddSnippetTexts();
    AddCreate(create_);
    AddSameName(sameName_);
  }

  ExitCode Run() override {
    LibraryFile library = LibraryFile::ForChange(session_, library_, create_);
    Snippet snippet{.Name = session_.Argument(name_), .Attachment = {}, .Code = {}, .Description = {}};
    texts_.Apply(session_, snippet);
    RequireHeld(session_, snippet);
    library.CheckRoom(1);
    if (!sameName_) CheckNameIsFree(library.snippets, snippet.Name, library.snippets.size(), session_.page);
    library.snippets.push_back(std::move(snippet));
    library.Save();
    return ExitCode::Done;
  }

 private:
  std::string library_;
  std::string name_;
  bool create_ = false;
  bool sameName_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeAdd(CLI::App& app, Session& session) {
  return std::make_unique<Add>(app, session);
}

}  // namespace snip
