#include <algorithm>
#include <stdexcept>

#include "cli/commands/Commands.h"
#include "cli/exchange/Json.h"
#include "library/BnsCheck.h"
#include "library/BnsSearch.h"

namespace snip {
namespace {

std::string_view WordFor(BnsSection section) {
  if (section == BnsSection::Name) return "name";
  return section == BnsSection::Description ? "description" : "code";
}

class Search : public Command {
 public:
  Search(CLI::App& app, Session& session) : Command(app, session, "search", "find text in libraries") {
    AddText("PATTERN", pattern_, "the text to find, one line");
    AddLibraries(libraries_);
    AddFlag("-i,--ignore-case", ignoreCase_, "ignore case");
    AddFlag("-w,--word", wholeWord_, "match whole words only");
    AddFlag("-E,--regex", regularExpression_,
            "the pattern is a regular expression in Perl's syntax, which matches within a line");
    AddWordList("--in", in_, {"name", "description", "code"}, "where to search; by default everywhere");
    AddFlag("-l,--names", namesOnly_, "print only the names of the snippets");
    AddFlag("-n,--count", countOnly_, "print only the number of lines of each library");
    Exclude("--names", "--count");
    AddJson();
  }

  ExitCode Run() override try {
    if (pattern_.find_first_of("\r\n") != std::string::npos) {
      throw Failure(ExitCode::Usage, "the pattern has more than one line");
    }
    const AnsiText pattern = session_.page.FromUtf8(pattern_);
    const Matcher matcher({.text = pattern.text,
                           .ignoreCase = ignoreCase_,
                           .wholeWord = wholeWord_,
                           .regularExpression = regularExpression_},
                          session_.page);
    const auto has = [&](const char* text) {
      return in_.empty() || std::find(in_.begin(), in_.end(), text) != in_.end();
    };
    const SearchedTexts texts{.name = has("name"), .description = has("description"), .code = has("code")};
    std::size_t total = 0;
    for (const std::string& path : libraries_) {
      InputFile file = session_.Open(path);
      // A library cannot hold a pattern with characters outside its code page.
      bool canHaveHits = pattern.lost == 0;
      if (canHaveHits && file.Rewind()) {
        canHaveHits = CanHaveHits(file, matcher);
        file.Rewind();
      }
      BnsScanner scanner(file);
      if (!scanner.version()) throw MalformedFile(path, Malformed(1, WhyNotALibrary(scanner)));
      prefix_ = libraries_.size() > 1 ? NameOf(path) + ": " : "";
      lastNamed_.reset();
      std::size_t count = 0;
      const auto take = [&](const Hit& hit) {
        ++count;
        Print(hit, path);
      };
      if (canHaveHits) SearchLibrary(scanner, matcher, texts, take);
      if (countOnly_ && !session_.json) session_.WriteLine(prefix_ + std::to_string(count));
      total += count;
    }
    if (session_.json) session_.WriteLine(list_.dump(2));
    return total > 0 ? ExitCode::Done : ExitCode::No;
  } catch (const std::invalid_argument& error) {
    throw Failure(ExitCode::Usage, error.what());
  } catch (const ExpressionTooSlow& error) {
    throw Failure(ExitCode::Refused, error.what());
  }

 private:
  void Print(const Hit& hit, const std::string& path) {
    if (session_.json) {
      list_.push_back({{"library", NameOf(path)},
                       {"position", hit.snippet + 1},
                       {"name", session_.page.ToUtf8(hit.name)},
                       {"part", WordFor(hit.section)},
                       {"line", hit.line},
                       {"text", session_.page.ToUtf8(hit.text)}});
    } else if (namesOnly_) {
      if (lastNamed_ != hit.snippet) session_.WriteLine(prefix_ + session_.page.ToUtf8(hit.name));
      lastNamed_ = hit.snippet;
    } else if (!countOnly_) {
      PrintLine(hit);
    }
  }

  void PrintLine(const Hit& hit) {
    Terminal& terminal = session_.terminal;
    const auto print = [&](std::string_view ansi, std::string_view colour = {}) {
      const bool coloured = terminal.coloured() && !colour.empty();
      if (coloured) terminal.WriteOwn(colour);
      terminal.Write(session_.page.ToUtf8(ansi));
      if (coloured) terminal.WriteOwn("\x1B[0m");
    };
    const std::size_t end = std::min(hit.match.at + hit.match.length, hit.text.size());
    terminal.Write(prefix_);
    print(hit.name, "\x1B[1m");
    terminal.Write(": " + std::string(WordFor(hit.section)) + " " + std::to_string(hit.line) + ": ");
    print(hit.text.substr(0, hit.match.at));
    print(hit.text.substr(hit.match.at, end - hit.match.at), "\x1B[1;31m");
    print(hit.text.substr(end));
    terminal.WriteOwn("\n");
  }

  std::string pattern_;
  std::vector<std::string> libraries_;
  bool ignoreCase_ = false;
  bool wholeWord_ = false;
  bool regularExpression_ = false;
  bool namesOnly_ = false;
  bool countOnly_ = false;
  std::vector<std::string> in_;  ///< "name", "description", "code"; all if empty.

  std::string prefix_;  ///< The library's name, if there are several.
  std::optional<std::size_t> lastNamed_;
  OrderedJson list_ = OrderedJson::array();
};

}  // namespace

std::unique_ptr<Command> MakeSearch(CLI::App& app, Session& session) {
  return std::make_unique<Search>(app, session);
}

}  // namespace snip
