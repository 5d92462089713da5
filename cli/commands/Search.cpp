#include "cli/records/Search.h"

#include <algorithm>

#include "cli/commands/Commands.h"
#include "cli/exchange/Json.h"

namespace snip {
namespace {

constexpr std::string_view kNameColour = "\x1B[1m";
constexpr std::string_view kMatchColour = "\x1B[1;31m";
constexpr std::string_view kNoColour = "\x1B[0m";

std::string_view WordFor(Part part) {
  if (part == Part::Name) return "name";
  return part == Part::Description ? "description" : "code";
}

SearchedParts PartsOf(const std::vector<std::string>& in) {
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
                       {"part", WordFor(hit.part)},
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
    terminal.Write(": " + std::string(WordFor(hit.part)) + " " + std::to_string(hit.line) + ": ");
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

}  // namespace

ExitCode Search(Session& session, const SearchOptions& options) {
  if (options.pattern.find_first_of("\r\n") != std::string::npos) {
    throw Failure(ExitCode::Usage, "what is searched for is one line");
  }
  const AnsiText pattern = session.page.FromUtf8(options.pattern);
  HitWriter writer(session, options);
  for (const std::string& path : options.libraries) {
    const FileBytes file = session.Read(path);
    const Matcher matcher({.text = pattern.text,
                           .ignoreCase = options.ignoreCase,
                           .wholeWord = options.wholeWord,
                           .regularExpression = options.regularExpression},
                          file.view(), session.page);
    writer.BeginLibrary(path);
    const std::size_t before = writer.count();
    const auto take = [&](const Hit& hit) { writer.Take(hit); };
    // A pattern with characters that no library can hold is nowhere.
    const SearchedParts parts = pattern.lost == 0 ? PartsOf(options.in) : SearchedParts{false, false, false};
    const ScannedFile scanned = SearchLibrary(file.view(), matcher, parts, take);
    if (!scanned.version) throw MalformedFile(path, Malformed(1, "not a library"));
    if (options.countOnly && !session.json) {
      session.WriteLine(writer.LibraryPrefix() + std::to_string(writer.count() - before));
    }
  }
  writer.Finish();
  return writer.count() > 0 ? ExitCode::Done : ExitCode::No;
}

}  // namespace snip
