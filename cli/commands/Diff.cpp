#include <algorithm>
#include <utility>

#include "cli/commands/Commands.h"
#include "cli/exchange/Json.h"
#include "library/LibraryDifference.h"
#include "library/LineDifference.h"

namespace snip {
namespace {

constexpr std::size_t kContextLines = 3;

/// A text of a snippet that a comparison looks at.
struct Part {
  const char* name;
  std::string Snippet::*text;
};
constexpr Part kParts[] = {
    {"attachment", &Snippet::Attachment}, {"description", &Snippet::Description}, {"code", &Snippet::Code}};

/// As SplitLines, but an empty text has no lines.
std::vector<std::string_view> LinesOf(const std::string& text) {
  return text.empty() ? std::vector<std::string_view>{} : SplitLines(text);
}

class Diff : public Command {
 public:
  Diff(CLI::App& app, Session& session)
      : Command(
            app, session, "diff",
            "compare two libraries, by snippets and then by lines; exits with 0 if they are the same, 1 if "
            "not, 2 for errors") {
    AddTexts("LIBRARY", arguments_, "the older library and the newer one");
    AddFlag("-n,--names", namesOnly_, "only which snippets changed");
    AddFlag("--textconv", forTextconv_, "print one library as text, for git to compare");
    AddFlag("--git", forGit_, "take the arguments that git gives to an external diff");
    Exclude("--textconv", "--git");
    AddJson();
  }

  ExitCode Run() override try {
    if (forTextconv_) return PrintText();
    if (forGit_) return CompareForGit();
    if (arguments_.size() != 2) throw Failure(ExitCode::Usage, "a comparison needs two libraries");
    const bool different = Compare(Read(arguments_[0]), Read(arguments_[1]));
    if (session_.json) session_.WriteLine(list_.dump(2));
    return different ? ExitCode::No : ExitCode::Done;
  } catch (const Failure& failure) {
    // 1 means different, so all errors share one other code, as in other comparing programs.
    throw Failure(ExitCode::Usage, failure.what());
  }

 private:
  using Snippets = std::vector<Snippet>;

  Snippets Read(const std::string& path) { return LibraryFile(session_, path).snippets; }

  /// Prints the text that git compares instead of the library's bytes.
  ExitCode PrintText() {
    if (arguments_.size() != 1) throw Failure(ExitCode::Usage, "--textconv takes one library");
    const std::string bytes = session_.Read(arguments_[0]);
    if (std::holds_alternative<NotALibrary>(ReadBns(bytes))) {
      // Not an error, because an old commit may have a damaged file and git would then show nothing.
      session_.terminal.Write(session_.page.ToUtf8(bytes));
      return ExitCode::Done;
    }
    for (const Snippet& snippet : ReadContents(session_, arguments_[0], bytes).snippets) {
      session_.WriteLine("Snippet " + Quoted(snippet));
      for (const auto& [name, text] : kParts) {
        if ((snippet.*text).empty()) continue;
        session_.WriteLine("  " + std::string(name));
        for (const std::string_view line : LinesOf(snippet.*text)) {
          session_.WriteLine("    " + session_.page.ToUtf8(line));
        }
      }
    }
    return ExitCode::Done;
  }

  /// PATH OLD-FILE OLD-HEX OLD-MODE NEW-FILE NEW-HEX NEW-MODE, or PATH alone for a file with a merge
  /// conflict. Git ends if this does not return 0.
  ExitCode CompareForGit() {
    if (arguments_.size() != 1 && arguments_.size() < 7) {
      throw Failure(ExitCode::Usage, "--git takes the seven arguments of an external diff");
    }
    session_.WriteLine((arguments_.size() == 1 ? "Unmerged: " : "Library ") + NameOf(arguments_[0]));
    if (arguments_.size() == 1) return ExitCode::Done;
    const auto read = [&](std::size_t first) {
      const bool there = arguments_[first + 2] != ".";
      return there ? Read(arguments_[first]) : Snippets{};
    };
    try {
      Compare(read(1), read(4));
    } catch (const Failure& failure) {
      session_.terminal.Complain(failure.what());
    }
    return ExitCode::Done;
  }

  /// Prints the differences; returns whether there are any.
  bool Compare(const Snippets& older, const Snippets& newer) {
    const auto changes = CompareLibraries(older, newer);
    for (const SnippetChange& change : changes) {
      // An added or a removed snippet is compared with an empty one.
      const Snippet none;
      const Snippet& before = change.oldPosition ? older[*change.oldPosition] : none;
      const Snippet& after = change.newPosition ? newer[*change.newPosition] : none;
      if (session_.json) {
        list_.push_back(AsJson(change, before, after));
      } else {
        Print(change, before, after);
      }
    }
    return !changes.empty();
  }

  /// What happened to the texts.
  static const char* WordFor(const SnippetChange& change) {
    if (!change.oldPosition) return "added";
    if (!change.newPosition) return "removed";
    return change.attachment || change.description || change.code ? "changed" : "";
  }

  std::string Quoted(const Snippet& snippet) { return "\"" + session_.page.ToUtf8(snippet.Name) + "\""; }

  void Print(const SnippetChange& change, const Snippet& before, const Snippet& after) {
    std::string what = WordFor(change);
    const auto add = [&](const std::string& more) { what += (what.empty() ? "" : ", ") + more; };
    if (change.renamed) add("renamed from " + Quoted(before));
    if (change.moved) add("moved");
    PrintLine("", Quoted(change.newPosition ? after : before) + ": " + what, "\x1B[1m");
    if (namesOnly_) return;
    for (const auto& [name, text] : kParts) PrintPart(name, LinesOf(before.*text), LinesOf(after.*text));
  }

  /// Prints changed lines as in unified diffs.
  void PrintPart(const char* name, const std::vector<std::string_view>& before,
                 const std::vector<std::string_view>& after) {
    const auto changes = CompareLines(before, after);
    for (auto first = changes.begin(); first != changes.end();) {
      // Changes whose context overlaps are printed together.
      auto last = first;
      const auto endOf = [](const LineChange& change) { return change.oldFirst + change.oldCount; };
      while (std::next(last) != changes.end() &&
             std::next(last)->oldFirst - endOf(*last) <= 2 * kContextLines) {
        ++last;
      }
      const std::size_t leading = std::min(kContextLines, first->oldFirst);
      const std::size_t trailing = std::min(kContextLines, before.size() - endOf(*last));
      const auto range = [&](char sign, std::size_t from, std::size_t to) {
        const std::size_t count = to - from + leading + trailing;
        return std::string(1, sign) + std::to_string(from - leading + (count > 0 ? 1 : 0)) + "," +
               std::to_string(count);
      };
      PrintLine("",
                "@@ " + std::string(name) + " " + range('-', first->oldFirst, endOf(*last)) + " " +
                    range('+', first->newFirst, last->newFirst + last->newCount) + " @@",
                "\x1B[36m");
      std::size_t line = first->oldFirst - leading;
      const auto print = [&](const char* sign, const std::vector<std::string_view>& lines, std::size_t from,
                             std::size_t to, std::string_view colour) {
        for (; from < to; ++from) PrintLine(sign, session_.page.ToUtf8(lines[from]), colour);
      };
      for (; first <= last; ++first) {
        print(" ", before, line, first->oldFirst, "");
        line = endOf(*first);
        print("-", before, first->oldFirst, line, "\x1B[31m");
        print("+", after, first->newFirst, first->newFirst + first->newCount, "\x1B[32m");
      }
      print(" ", before, line, line + trailing, "");
    }
  }

  void PrintLine(std::string_view sign, std::string_view utf8, std::string_view colour) {
    Terminal& terminal = session_.terminal;
    const bool coloured = terminal.coloured() && !colour.empty();
    if (coloured) terminal.WriteOwn(colour);
    terminal.WriteOwn(sign);
    terminal.Write(utf8);
    terminal.WriteOwn(coloured ? "\x1B[0m\n" : "\n");
  }

  OrderedJson AsJson(const SnippetChange& change, const Snippet& before, const Snippet& after) const {
    const auto position = [](std::optional<std::size_t> index) {
      return index ? OrderedJson(*index + 1) : OrderedJson();
    };
    const CodePage& page = session_.page;
    OrderedJson json = {
        {"change", WordFor(change)},
        {"name", page.ToUtf8(change.newPosition ? after.Name : before.Name)},
        {"oldPosition", position(change.oldPosition)},
        {"newPosition", position(change.newPosition)},
        {"renamedFrom", change.renamed ? OrderedJson(page.ToUtf8(before.Name)) : OrderedJson()},
        {"moved", change.moved}};
    if (namesOnly_) return json;
    for (const auto& [name, text] : kParts) {
      const auto oldLines = LinesOf(before.*text);
      const auto newLines = LinesOf(after.*text);
      json[name] = OrderedJson::array();
      for (const LineChange& lines : CompareLines(oldLines, newLines)) {
        const auto texts = [&](const std::vector<std::string_view>& from, std::size_t first,
                               std::size_t count) {
          OrderedJson list = OrderedJson::array();
          for (std::size_t i = first; i < first + count; ++i) list.push_back(page.ToUtf8(from[i]));
          return list;
        };
        json[name].push_back({{"oldLine", lines.oldFirst + 1},
                              {"newLine", lines.newFirst + 1},
                              {"removed", texts(oldLines, lines.oldFirst, lines.oldCount)},
                              {"added", texts(newLines, lines.newFirst, lines.newCount)}});
      }
    }
    return json;
  }

  std::vector<std::string> arguments_;
  bool namesOnly_ = false;
  bool forTextconv_ = false;
  bool forGit_ = false;
  OrderedJson list_ = OrderedJson::array();
};

}  // namespace

std::unique_ptr<Command> MakeDiff(CLI::App& app, Session& session) {
  return std::make_unique<Diff>(app, session);
}

}  // namespace snip
