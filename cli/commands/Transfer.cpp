#include "cli/commands/Transfer.h"

#include <algorithm>
#include <filesystem>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "cli/exchange/Json.h"

namespace snip {

void Transfer::AddTransfer() {
  AddWord("--same-name", numberSameNames_, {{"skip", false}, {"number", true}},
          "skip or number snippets whose name is taken; by default skip");
  AddDryRun();
  AddCreate(create_);
  AddLossy();
  AddJson();
}

void Transfer::AddSnippets(LibraryFile& library, Imported imported) {
  for (const LossNote& note : imported.report.notes()) {
    report_.Note(note.loss, note.snippet, note.count, note.detail);
  }
  // Only the names that the library had before count as taken, because a source may have a name several
  // times.
  std::vector<Snippet>& snippets = library.snippets;
  std::unordered_multimap<std::string, std::size_t> names;
  std::unordered_set<std::string> taken;
  for (std::size_t i = 0; i < snippets.size(); ++i) {
    names.emplace(snippets[i].Name, i);
    taken.insert(snippets[i].Name);
  }
  for (Snippet& snippet : imported.snippets) {
    const std::string name = session_.page.ToUtf8(snippet.Name);
    const auto [first, last] = names.equal_range(snippet.Name);
    const bool there =
        std::any_of(first, last, [&](const auto& known) { return snippets[known.second] == snippet; });
    if (there) {
      ++report_.alreadyThere;
    } else if (first != last && !numberSameNames_) {
      report_.Note(Loss::SameName, name);
    } else if (snippets.size() >= Library::kMaxSnippets) {
      report_.Note(Loss::NoRoom, name);
    } else {
      if (first != last) {
        const std::string original = snippet.Name;
        for (int number = 2; taken.contains(snippet.Name); ++number) {
          snippet.Name = original + " (" + std::to_string(number) + ")";
        }
        report_.Note(Loss::Renamed, name, 1, session_.page.ToUtf8(snippet.Name));
      }
      taken.insert(snippet.Name);
      snippets.push_back(std::move(snippet));
      ++report_.carried;
    }
  }
}

ExitCode PrintReport(Session& session, const ConversionReport& report, const std::string& done) {
  if (session.json) {
    OrderedJson notes = OrderedJson::array();
    for (const LossNote& note : report.notes()) {
      notes.push_back({{"snippet", note.snippet},
                       {"loss", LossKey(note.loss)},
                       {"leftOut", IsLeftOut(note.loss)},
                       {"count", note.count},
                       {"detail", note.detail}});
    }
    const OrderedJson printed = {{"dryRun", session.dryRun},
                                 {done, report.carried},
                                 {"alreadyThere", report.alreadyThere},
                                 {"leftOut", report.leftOut()},
                                 {"notes", notes}};
    session.WriteLine(printed.dump(2));
  } else {
    for (const LossNote& note : report.notes()) session.terminal.Complain(Describe(note));
    session.terminal.Complain((session.dryRun ? "would have " : "") + done + " " +
                              std::to_string(report.carried) + ", already there " +
                              std::to_string(report.alreadyThere) + ", skipped " +
                              std::to_string(report.leftOut()));
  }
  return report.leftOut() > 0 ? ExitCode::No : ExitCode::Done;
}

void RequireAllCharacters(Session& session, const ConversionReport& report, const std::string& done) {
  if (report.CountOf(Loss::Characters) == 0 || session.lossy) return;
  const bool dryRun = std::exchange(session.dryRun, true);
  PrintReport(session, report, done);
  session.dryRun = dryRun;
  throw Failure(ExitCode::Refused, "nothing written, because characters would be lost; --lossy allows that");
}

std::map<std::string, Format> FormatWords() {
  return {{"vs", Format::VisualStudio}, {"vscode", Format::VsCode}, {"bas", Format::Bas}};
}

Format FormatOf(Format wanted, const std::string& path) {
  if (wanted != Format::ByName) return wanted;
  const std::filesystem::path file = ToPath(path);
  std::error_code ignored;
  const std::string extension = ToUtf8(file.extension());
  if (extension == ".snippet") return Format::VisualStudio;
  if (extension == ".code-snippets" || extension == ".json") return Format::VsCode;
  const bool folder =
      path != "-" && (file.filename().empty() || std::filesystem::is_directory(file, ignored));
  if (folder || extension == ".bas") return Format::Bas;
  throw Failure(ExitCode::Usage, NameOf(path) + ": unknown extension; choose a format with --format");
}

std::string AttachmentsBeside(const std::string& path) {
  return path + ".attachments";
}

}  // namespace snip
