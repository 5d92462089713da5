#include "cli/commands/MergeSnippets.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "cli/exchange/Json.h"

namespace snip {

void MergeSnippets(std::vector<Snippet>& into, std::vector<Snippet> from, SameName sameName,
                   const CodePage& page, Outcome& outcome) {
  // Names that the source itself has several times are no reason to leave any of them out.
  std::unordered_multimap<std::string, std::size_t> names;
  std::unordered_set<std::string> taken;
  for (std::size_t i = 0; i < into.size(); ++i) names.emplace(into[i].Name, i);
  for (const Snippet& snippet : into) taken.insert(snippet.Name);
  for (Snippet& snippet : from) {
    const std::string name = page.ToUtf8(snippet.Name);
    const auto [first, last] = names.equal_range(snippet.Name);
    const bool there =
        std::any_of(first, last, [&](const auto& known) { return into[known.second] == snippet; });
    if (there) {
      ++outcome.alreadyThere;
      continue;
    }
    if (first != last && sameName == SameName::Skip) {
      outcome.Note(Loss::SameName, name);
      continue;
    }
    if (into.size() >= Library::kMaxSnippets) {
      outcome.Note(Loss::NoRoom, name);
      continue;
    }
    if (first != last) {
      const std::string original = snippet.Name;
      for (int number = 2; taken.contains(snippet.Name); ++number) {
        snippet.Name = original + " (" + std::to_string(number) + ")";
      }
      outcome.Note(Loss::Renamed, name, 1, page.ToUtf8(snippet.Name));
    }
    taken.insert(snippet.Name);
    into.push_back(std::move(snippet));
    ++outcome.carried;
  }
}

ExitCode Report(Session& session, const Outcome& outcome, const std::string& done, bool dryRun) {
  if (session.json) {
    OrderedJson notes = OrderedJson::array();
    for (const LossNote& note : outcome.notes()) {
      notes.push_back({{"snippet", note.snippet},
                       {"loss", LossKey(note.loss)},
                       {"leftOut", IsLeftOut(note.loss)},
                       {"count", note.count},
                       {"detail", note.detail}});
    }
    const OrderedJson report = {{"dryRun", dryRun},
                                {done, outcome.carried},
                                {"alreadyThere", outcome.alreadyThere},
                                {"leftOut", outcome.leftOut()},
                                {"notes", notes}};
    session.WriteLine(report.dump(2));
  } else {
    for (const LossNote& note : outcome.notes()) session.terminal.Complain(Describe(note));
    const std::string summary = std::string(dryRun ? "would have " : "") + done + " " +
                                std::to_string(outcome.carried) + ", already there " +
                                std::to_string(outcome.alreadyThere) + ", left out " +
                                std::to_string(outcome.leftOut());
    session.terminal.Complain(summary);
  }
  return outcome.leftOut() > 0 ? ExitCode::No : ExitCode::Done;
}

}  // namespace snip
