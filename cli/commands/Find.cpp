#include <algorithm>

#include "cli/commands/Commands.h"
#include "cli/commands/FoundLibraries.h"
#include "cli/exchange/Json.h"
#include "find/Tags.h"

namespace snip {
namespace {

std::string_view WordFor(HitPlace place) {
  if (place == HitPlace::Code) return "code";
  return place == HitPlace::Description ? "description" : "name";
}

class Find : public Command {
 public:
  Find(CLI::App& app, Session& session)
      : Command(app, session, "find", "find snippets by words, the best first") {
    AddText("QUERY", query_,
            "words that a snippet has; \"a phrase\", -word, #tag, name:word, code:word, in:library");
    AddLibraries(libraries_);
    AddOption("-n,--most", most_, "NUMBER", "print at most so many snippets");
    AddJson();
  }

  ExitCode Run() override {
    const Folding folding = FoldingOf(session_.page);
    Finder finder(folding);
    finder.SetLibraries(ReadSearchedLibraries(session_, libraries_, folding));
    const AnsiText query = session_.page.FromUtf8(query_);
    // A library cannot hold a word with characters outside its code page.
    std::vector<Found> found = query.lost == 0 ? finder.Search(query.text) : std::vector<Found>();
    found.resize(std::min(found.size(), most_.value_or(found.size())));
    OrderedJson list = OrderedJson::array();
    for (const Found& one : found) {
      const SearchedLibrary& library = *finder.libraries()[one.library];
      const std::string name = session_.page.ToUtf8(finder.SnippetOf(one).Name);
      if (!session_.json) {
        session_.WriteLine(name + " - " + NameOf(library.path()));
        continue;
      }
      list.push_back({{"library", NameOf(library.path())}, {"position", one.snippet + 1}, {"name", name}});
      if (one.place != HitPlace::None) list.back()["part"] = WordFor(one.place);
    }
    if (session_.json) session_.WriteLine(list.dump(2));
    return found.empty() ? ExitCode::No : ExitCode::Done;
  }

 private:
  std::string query_;
  std::vector<std::string> libraries_;
  std::optional<std::size_t> most_;
};

class Tags : public Command {
 public:
  Tags(CLI::App& app, Session& session)
      : Command(app, session, "tags", "list the tags in descriptions, words with # before them") {
    AddLibraries(libraries_);
    AddJson();
  }

  ExitCode Run() override {
    const Folding folding = FoldingOf(session_.page);
    const auto tags = CountTags(ReadSearchedLibraries(session_, libraries_, folding), folding);
    OrderedJson list = OrderedJson::array();
    for (const TagCount& count : tags) {
      const std::string tag = session_.page.ToUtf8(count.tag);
      if (session_.json) {
        list.push_back({{"tag", tag}, {"snippets", count.count}});
      } else {
        session_.WriteLine("#" + tag + " " + std::to_string(count.count));
      }
    }
    if (session_.json) session_.WriteLine(list.dump(2));
    return tags.empty() ? ExitCode::No : ExitCode::Done;
  }

 private:
  std::vector<std::string> libraries_;
};

}  // namespace

std::unique_ptr<Command> MakeFind(CLI::App& app, Session& session) {
  return std::make_unique<Find>(app, session);
}

std::unique_ptr<Command> MakeTags(CLI::App& app, Session& session) {
  return std::make_unique<Tags>(app, session);
}

}  // namespace snip
