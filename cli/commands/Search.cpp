#include "library/BnsSearch.h"

#include <algorithm>
#include <stdexcept>

#include "cli/commands/Commands.h"
#include "cli/exchange/Json.h"
#include "library/BnsCheck.h"

namespace snip {
namespace {

constexpr std::string_view kNameColour = "\x1B[1m";
constexpr std::string_view kMatchColour = "\x1B[1;31m";
constexpr std::string_view kNoColour = "\x1B[0m";

std::string_view WordFor(BnsSection section) {
  if (section == BnsSection::Name) return "name";
  return section == BnsSection::Description ? "description" : "code";
}

SearchedTexts TextsOf(const std::vector<std::string>& in) {
  if (in.empty()) return {};
  const auto has = [&](std::string_view part) { return std::find(in.begin(), in.end(), part) != in.end(); };
  return {.name = has("name"), .description = has("description"), .code = has("code")};
}

/// Writes the lines that were found.
class HitWriter {
 public:
  HitWriter(Session& session, const SearchOptions& options) : session_(session), options_(options) {}

  void BeginLibrary(const std::string& path) {
    library_ = path;
    lastNamed_.reset();
  }

  void Take(const Hit& hit) {
    ++count_;
    if (session_.json) {
      list_.push_back({{"library", Session::NameOf(library_)},
                       {"position", hit.snippet + 1},
                       {"name", session_.page.ToUtf8(hit.name)},
                       {"part", WordFor(hit.section)},
                       {"line", hit.line},
                       {"text", session_.page.ToUtf8(hit.text)}});
    } else if (options_.namesOnly) {
      if (lastNamed_ != hit.snippet) session_.WriteLine(LibraryPrefix() + session_.page.ToUtf8(hit.name));
      lastNamed_ = hit.snippet;
    } else if (!options_.countOnly) {
      WriteHit(hit);
    }
  }

  std::size_t count() const { return count_; }
  std::string LibraryPrefix() const {
    return options_.libraries.size() > 1 ? Session::NameOf(library_) + ": " : std::string();
  }
  void Finish() {
    if (session_.json) session_.WriteLine(list_.dump(2));
  }

 private:
  void WriteHit(const Hit& hit) {
    Terminal& terminal = session_.terminal;
    const auto colour = [&](std::string_view code) {
      if (terminal.coloured()) terminal.WriteOwn(code);
    };
    const auto text = [&](std::string_view ansi) { terminal.Write(session_.page.ToUtf8(ansi)); };
    terminal.Write(LibraryPrefix());
    colour(kNameColour);
    text(hit.name);
    colour(kNoColour);
    terminal.Write(": " + std::string(WordFor(hit.section)) + " " + std::to_string(hit.line) + ": ");
    const std::size_t end = std::min(hit.match.at + hit.match.length, hit.text.size());
    text(hit.text.substr(0, hit.match.at));
    colour(kMatchColour);
    text(hit.text.substr(hit.match.at, end - hit.match.at));
    colour(kNoColour);
    text(hit.text.substr(end));
    terminal.WriteOwn("\n");
  }

  Session& session_;
  const SearchOptions& options_;
  std::string library_;
  std::optional<std::size_t> lastNamed_;
  std::size_t count_ = 0;
  OrderedJson list_ = OrderedJson::array();
};

Matcher MakeMatcher(const SearchOptions& options, const std::string& pattern, const CodePage& page) try {
  return Matcher({.text = pattern,
                  .ignoreCase = options.ignoreCase,
                  .wholeWord = options.wholeWord,
                  .regularExpression = options.regularExpression},
                 page);
} catch (const std::invalid_argument& error) {
  throw Failure(ExitCode::Usage, error.what());
}

}  // namespace

ExitCode Search(Session& session, const SearchOptions& options) try {
  if (options.pattern.find_first_of("\r\n") != std::string::npos) {
    throw Failure(ExitCode::Usage, "what is searched for is one line");
  }
  const AnsiText pattern = session.page.FromUtf8(options.pattern);
  const Matcher matcher = MakeMatcher(options, pattern.text, session.page);
  HitWriter writer(session, options);
  for (const std::string& path : options.libraries) {
    const FileBytes file = session.Read(path);
    BytesInMemory bytes(file.view());
    BnsScanner scanner(bytes);
    if (!scanner.version()) throw MalformedFile(path, Malformed(1, WhyNotALibrary(scanner)));
    writer.BeginLibrary(path);
    const std::size_t before = writer.count();
    // A library cannot hold a pattern with characters outside its code page.
    if (pattern.lost == 0) {
      SearchLibrary(scanner, matcher, TextsOf(options.in), [&](const Hit& hit) { writer.Take(hit); });
    }
    if (options.countOnly && !session.json) {
      session.WriteLine(writer.LibraryPrefix() + std::to_string(writer.count() - before));
    }
  }
  writer.Finish();
  return writer.count() > 0 ? ExitCode::Done : ExitCode::No;
} catch (const ExpressionTooSlow& error) {
  throw Failure(ExitCode::Refused, error.what());
}

}  // namespace snip
