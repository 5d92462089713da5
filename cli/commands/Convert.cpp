#include "cli/commands/Commands.h"
#include "cli/system/KeptWrite.h"

namespace snip {
namespace {

class Convert : public Command {
 public:
  Convert(CLI::App& app, Session& session)
      : Command(app, session, "convert", "convert a version 1 library to version 2") {
    AddLibrary(library_);
    AddOption("-o,--output", output_, "FILE", "write a new file, or - for the standard output");
    AddLossyChange();
  }

  ExitCode Run() override {
    const std::string bytes = session_.Read(library_);
    BnsContents contents = ReadContents(session_, library_, bytes);
    CheckNothingIsLost(session_, library_, bytes);
    // Version 2 reserves lines that are text in version 1.
    for (Snippet& snippet : contents.snippets) RequireHeld(session_, snippet);
    const std::string converted = WriteBns(contents.snippets);
    if (output_.value_or(library_) == "-") {
      session_.terminal.WriteBytes(converted);
    } else if (output_) {
      WriteLibraryFile(*output_, converted, Existing::Keep);
    } else if (converted != bytes) {
      WriteLibraryFile(library_, converted, Existing::Replace);
    }
    return ExitCode::Done;
  }

 private:
  std::string library_;
  std::optional<std::string> output_;  ///< By default the library itself.
};

}  // namespace

std::unique_ptr<Command> MakeConvert(CLI::App& app, Session& session) {
  return std::make_unique<Convert>(app, session);
}

}  // namespace snip
