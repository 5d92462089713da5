#include <algorithm>
#include <filesystem>
#include <utility>

#include "cli/commands/Commands.h"

namespace snip {
namespace {

class Move : public Command {
 public:
  Move(CLI::App& app, Session& session)
      : Command(app, session, "move", "move a snippet within its library or to another one") {
    AddLibrary(library_);
    AddSnippet(snippet_);
    AddOption("--to", position_, "NUMBER", "to this position, from 1");
    AddOption("--before", before_, "SNIPPET", "before this snippet");
    AddOption("--after", after_, "SNIPPET", "after this snippet");
    AddOption("--into", into_, "LIBRARY", "to the end of this other library");
    AddLossyChange();
  }

  ExitCode Run() override {
    if (position_.has_value() + before_.has_value() + after_.has_value() + into_.has_value() != 1) {
      throw Failure(ExitCode::Usage, "give one of --to, --before, --after and --into");
    }
    LibraryFile library = LibraryFile::ForChange(session_, library_);
    const std::size_t position = library.Find(snippet_);
    if (into_) {
      MoveInto(library, position);
      return ExitCode::Done;
    }
    // The snippet that it goes before, counted before the move.
    std::size_t target = position;
    if (before_) target = library.Find(*before_);
    if (after_) target = library.Find(*after_) + 1;
    if (position_) {
      if (*position_ < 1 || *position_ > library.snippets.size()) {
        throw Failure(ExitCode::Usage,
                      "the library has the positions 1 to " + std::to_string(library.snippets.size()));
      }
      target = *position_ - 1;
      if (target > position) ++target;
    }
    const auto at = [&](std::size_t i) { return library.snippets.begin() + static_cast<std::ptrdiff_t>(i); };
    if (target <= position) {
      std::rotate(at(target), at(position), at(position + 1));
    } else {
      std::rotate(at(position), at(position + 1), at(target));
    }
    library.Save();
    return ExitCode::Done;
  }

 private:
  /// Writes the other library first: if the second write fails, the snippet is in both libraries rather than
  /// in none.
  void MoveInto(LibraryFile& from, std::size_t position) {
    std::error_code ignored;
    if (std::filesystem::equivalent(ToPath(library_), ToPath(*into_), ignored)) {
      throw Failure(ExitCode::Usage, "the snippet is already in that library");
    }
    LibraryFile to = LibraryFile::ForChange(session_, *into_);
    to.CheckRoom(1);
    CheckNameIsFree(to.snippets, from.snippets[position].Name, to.snippets.size(), session_.page);
    to.snippets.push_back(std::move(from.snippets[position]));
    from.snippets.erase(from.snippets.begin() + static_cast<std::ptrdiff_t>(position));
    to.Save();
    from.Save();
  }

  std::string library_;
  std::string snippet_;
  // One of these:
  std::optional<std::size_t> position_;  ///< From 1.
  std::optional<std::string> before_;
  std::optional<std::string> after_;
  std::optional<std::string> into_;  ///< Another library.
};

}  // namespace

std::unique_ptr<Command> MakeMove(CLI::App& app, Session& session) {
  return std::make_unique<Move>(app, session);
}

}  // namespace snip
