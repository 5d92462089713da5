#include <optional>
#include <utility>

#include "cli/commands/Commands.h"
#include "cli/commands/Transfer.h"
#include "cli/exchange/Json.h"
#include "library/LibraryMerge.h"

namespace snip {
namespace {

class Merge : public Transfer {
 public:
  Merge(CLI::App& app, Session& session)
      : Transfer(app, session, "merge",
                 "add the snippets of other libraries to a library, or merge two versions of a library") {
    AddText("LIBRARY", library_, "the library that gets them; with --base our version");
    AddTexts("SOURCE", sources_, "the libraries that they come from; with --base their version");
    AddOption("--base", base_, "FILE",
              "merge by the library that both versions come from: a snippet on which both sides contradict "
              "each other is kept twice, as \"NAME\" and \"NAME (theirs)\", and the exit code is 1");
    AddOption("-o,--output", output_, "FILE", "the file to write with --base, in place of LIBRARY");
    AddOption("--label", label_, "NAME", "what messages call the library with --base");
    AddTransfer();
  }

  ExitCode Run() override {
    if (base_) return MergeVersions();
    if (output_ || label_) throw Failure(ExitCode::Usage, "--output and --label need --base");
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
  ExitCode MergeVersions() {
    if (sources_.size() != 1) throw Failure(ExitCode::Usage, "--base takes our version and their version");
    const std::vector<Snippet> base = ReadVersion(*base_, "base");
    const std::vector<Snippet> ours = ReadVersion(library_, "ours");
    const std::vector<Snippet> theirs = ReadVersion(sources_.front(), "theirs");
    const MergedLibrary merged = MergeLibraries(base, ours, theirs);
    RequireRoom(label_.value_or(library_), merged.snippets.size());
    if (!session_.dryRun) WriteLibrary(session_, output_.value_or(library_), merged.snippets);
    OrderedJson conflicts = OrderedJson::array();
    for (const std::string& conflict : merged.conflicts) {
      conflicts.push_back(session_.page.ToUtf8(conflict));
      if (session_.json) continue;
      session_.terminal.Complain(NameOf(label_.value_or(library_)) +
                                 ": conflict: " + session_.page.ToUtf8(conflict));
    }
    if (session_.json) {
      session_.WriteLine(OrderedJson{{"snippets", merged.snippets.size()}, {"conflicts", conflicts}}.dump(2));
    }
    return merged.conflicts.empty() ? ExitCode::Done : ExitCode::No;
  }

  std::vector<Snippet> ReadVersion(const std::string& path, const std::string& side) {
    const std::string bytes = session_.Read(path);
    const std::string name = label_ ? *label_ + " (" + side + ")" : path;
    if (side != "base") return ReadForChange(session_, name, bytes).snippets;
    // Git passes an empty file if both sides added the library, and the library may have been converted
    // since.
    if (bytes.empty()) return {};
    CheckNothingIsLost(session_, name, bytes);
    return ReadContents(session_, name, bytes).snippets;
  }

  std::string library_;
  std::vector<std::string> sources_;
  std::optional<std::string> base_;
  std::optional<std::string> output_;
  std::optional<std::string> label_;
};

}  // namespace

std::unique_ptr<Command> MakeMerge(CLI::App& app, Session& session) {
  return std::make_unique<Merge>(app, session);
}

}  // namespace snip
