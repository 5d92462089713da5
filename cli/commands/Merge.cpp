#include <utility>

#include "cli/commands/Commands.h"
#include "cli/commands/Transfer.h"

namespace snip {
namespace {

class Merge : public Transfer {
 public:
  Merge(CLI::App& app, Session& session)
      : Transfer(app, session, "merge", "add the snippets of other libraries to a library") {
    AddText("LIBRARY", library_, "the library that gets them");
    AddTexts("SOURCE", sources_, "the libraries that they come from");
    AddTransfer();
  }

  ExitCode Run() override {
    LibraryFile library = LibraryFile::ForChange(session_, library_, create_);
    for (const std::string& path : sources_) {
      LibraryFile source(session_, path);
      // A version 1 library can have snippets that version 2 cannot hold.
      SnippetImporter importer(session_.page);
      for (Snippet& snippet : source.snippets) importer.AddConverted(std::move(snippet));
      AddSnippets(library, importer.Finish());
    }
    if (!session_.dryRun && report_.carried > 0) library.Save();
    return PrintReport(session_, report_, "merged");
  }

 private:
  std::string library_;
  std::vector<std::string> sources_;
};

}  // namespace

std::unique_ptr<Command> MakeMerge(CLI::App& app, Session& session) {
  return std::make_unique<Merge>(app, session);
}

}  // namespace snip
