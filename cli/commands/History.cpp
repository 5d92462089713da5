#include <algorithm>
#include <utility>
#include <vector>

#include "cli/commands/Commands.h"
#include "cli/exchange/Json.h"
#include "cli/system/KeptWrite.h"
#include "history/ChangeCounts.h"

namespace snip {
namespace {

/// The history of a library on the command line. A version is named by its file name without the extension.
class KeptVersions {
 public:
  KeptVersions(Session& session, const std::string& path)
      : session_(session), path_(path), folder_(HistoryOf(files_, path)) {
    if (folder_) versions_ = folder_->Versions();
  }

  /// The newest first.
  const std::vector<Version>& versions() const { return versions_; }
  static std::string Name(const Version& version) {
    const std::string file = FileNameOf(version);
    return file.substr(0, file.size() - kLibraryExtension.size());
  }
  /// By its name, or by "#" and its number; 1 is the newest.
  const Version& Find(const std::string& which) const {
    for (std::size_t i = 0; i < versions_.size(); ++i) {
      if (which == Name(versions_[i]) || which == "#" + std::to_string(i + 1)) return versions_[i];
    }
    throw Failure(ExitCode::No, NameOf(path_) + ": the history has no version \"" + which + "\"");
  }
  std::string Read(const Version& version) {
    auto bytes = folder_->Read(version);
    if (!bytes) throw Failure(ExitCode::File, Name(version) + ": cannot be read");
    return std::move(*bytes);
  }
  std::vector<Snippet> Snippets(const Version& version) {
    return ReadContents(session_, Name(version), Read(version)).snippets;
  }

 private:
  Session& session_;
  std::string path_;
  SystemFiles files_;
  std::optional<VersionFolder> folder_;
  std::vector<Version> versions_;
};

class History : public Command {
 public:
  History(CLI::App& app, Session& session)
      : Command(app, session, "history", "list the versions of a library that are kept, the newest first") {
    AddLibrary(library_);
    AddJson();
  }

  ExitCode Run() override {
    KeptVersions kept(session_, library_);
    const std::vector<Version>& versions = kept.versions();
    OrderedJson list = OrderedJson::array();
    std::vector<Snippet> snippets =
        versions.empty() ? std::vector<Snippet>() : SnippetsIn(kept.Read(versions.front()));
    for (std::size_t i = 0; i < versions.size(); ++i) {
      const bool first = i + 1 == versions.size();
      std::vector<Snippet> older = first ? std::vector<Snippet>() : SnippetsIn(kept.Read(versions[i + 1]));
      const ChangeCounts counts = CountChanges(older, snippets);
      const std::string name = KeptVersions::Name(versions[i]);
      list.push_back(
          {{"version", name},
           {"kind", versions[i].tag == VersionTag::Saved ? "saved" : std::string(NameOf(versions[i].tag))},
           {"bytes", versions[i].size},
           {"added", counts.added},
           {"removed", counts.removed},
           {"changed", counts.changed}});
      if (!session_.json)
        session_.WriteLine("#" + std::to_string(i + 1) + "\t" + name + "\t" + TextOf(counts));
      snippets = std::move(older);
    }
    if (session_.json) session_.WriteLine(list.dump(2));
    return versions.empty() ? ExitCode::No : ExitCode::Done;
  }

 private:
  std::string library_;
};

class Restore : public Command {
 public:
  Restore(CLI::App& app, Session& session)
      : Command(app, session, "restore", "put a kept version of a library back, or one snippet of it") {
    AddLibrary(library_);
    AddText("VERSION", version_, "a version as \"bns history\" names it, or # and its number");
    AddOptionalText("SNIPPET", snippet_, "the snippet, by its name; the whole library without one");
    AddLossyChange();
  }

  ExitCode Run() override {
    KeptVersions kept(session_, library_);
    const Version& version = kept.Find(version_);
    if (!snippet_) {
      WriteLibraryFile(library_, kept.Read(version), Existing::Replace);
      return ExitCode::Done;
    }
    const std::string name = session_.Argument(*snippet_);
    const auto named = [&](std::vector<Snippet>& snippets) {
      return std::ranges::find_if(snippets, [&](const Snippet& each) {
        return session_.page.Lower(each.Name) == session_.page.Lower(name);
      });
    };
    std::vector<Snippet> then = kept.Snippets(version);
    const auto found = named(then);
    if (found == then.end()) {
      throw Failure(ExitCode::No, version_ + ": there is no snippet \"" + *snippet_ + "\"");
    }
    LibraryFile library = LibraryFile::ForChange(session_, library_);
    const auto place = named(library.snippets);
    if (place != library.snippets.end()) {
      *place = std::move(*found);
    } else {
      library.CheckRoom(1);
      const auto before = std::min(found - then.begin(), std::ssize(library.snippets));
      library.snippets.insert(library.snippets.begin() + before, std::move(*found));
    }
    library.Save();
    return ExitCode::Done;
  }

 private:
  std::string library_;
  std::string version_;
  std::optional<std::string> snippet_;
};

}  // namespace

std::unique_ptr<Command> MakeHistory(CLI::App& app, Session& session) {
  return std::make_unique<History>(app, session);
}

std::unique_ptr<Command> MakeRestore(CLI::App& app, Session& session) {
  return std::make_unique<Restore>(app, session);
}

}  // namespace snip
