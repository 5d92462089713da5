#include "cli/commands/Commands.h"

namespace snip {
namespace {

class Edit : public SnippetTextCommand {
 public:
  Edit(CLI::App& app, Session& session)
      : SnippetTextCommand(app, session, "edit", "change the texts of a snippet") {
    AddLibrary(library_);
    AddSnippet(snippet_);
    AddSnippetTexts();
  }

  ExitCode Run() override {
    if (texts_.empty()) {
      throw Failure(ExitCode::Usage, "nothing to change: give --code, --description or --attachment");
    }
    LibraryFile library = LibraryFile::ForChange(session_, library_);
    Snippet& snippet = library.snippets[library.Find(snippet_)];
    texts_.Apply(session_, snippet);
    RequireHeld(session_, snippet);
    library.Save();
    return ExitCode::Done;
  }

 private:
  std::string library_;
  std::string snippet_;
};

}  // namespace

std::unique_ptr<Command> MakeEdit(CLI::App& app, Session& session) {
  return std::make_unique<Edit>(app, session);
}

}  // namespace snip
