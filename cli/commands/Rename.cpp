#include "cli/commands/Commands.h"

namespace snip {
namespace {

class Rename : public Command {
 public:
  Rename(CLI::App& app, Session& session) : Command(app, session, "rename", "rename a snippet") {
    AddLibrary(library_);
    AddSnippet(snippet_);
    AddText("NAME", name_, "its new name");
    AddSameName(sameName_);
    AddLossy();
  }

  ExitCode Run() override {
    LibraryFile library = LibraryFile::ForChange(session_, library_);
    const std::size_t position = library.Find(snippet_);
    Snippet& snippet = library.snippets[position];
    snippet.Name = session_.Argument(name_);
    RequireHeld(session_, snippet);
    if (!sameName_) CheckNameIsFree(library.snippets, snippet.Name, position, session_.page);
    library.Save();
    return ExitCode::Done;
  }

 private:
  std::string library_;
  std::string snippet_;
  std::string name_;
  bool sameName_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeRename(CLI::App& app, Session& session) {
  return std::make_unique<Rename>(app, session);
}

}  // namespace snip
