#include <functional>
#include <set>

#include "cli/commands/Commands.h"

namespace snip {
namespace {

class Remove : public Command {
 public:
  Remove(CLI::App& app, Session& session)
      : Command(app, session, "remove", "remove snippets from a library") {
    AddLibrary(library_);
    AddTexts("SNIPPET", which_, "the snippets' names, or # and their numbers");
    AddLossyChange();
  }

  ExitCode Run() override {
    LibraryFile library = LibraryFile::ForChange(session_, library_);
    // Find all before removing the first, and remove the last first, because removing changes positions.
    std::set<std::size_t, std::greater<>> positions;
    for (const std::string& which : which_) positions.insert(library.Find(which));
    for (const std::size_t position : positions) {
      library.snippets.erase(library.snippets.begin() + static_cast<std::ptrdiff_t>(position));
    }
    library.Save();
    return ExitCode::Done;
  }

 private:
  std::string library_;
  std::vector<std::string> which_;
};

}  // namespace

std::unique_ptr<Command> MakeRemove(CLI::App& app, Session& session) {
  return std::make_unique<Remove>(app, session);
}

}  // namespace snip
