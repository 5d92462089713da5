#include "ui/history/HistoryRows.h"

#include "library/LibraryDifference.h"
#include "library/LineDifference.h"

namespace snip {
namespace {

std::string WhatDiffers(const SnippetChange& change, std::span<const Snippet> now) {
  std::string what;
  const auto add = [&](bool differs, const std::string& word) {
    if (differs) what += (what.empty() ? ": " : ", ") + word;
  };
  add(change.renamed, "now \"" + now[*change.oldPosition].Name + "\"");
  add(change.code, "code");
  add(change.description, "description");
  add(change.attachment, "attachment");
  add(change.moved, "place");
  return what;
}

void AddText(std::vector<DifferenceLine>& lines, const char* heading, const std::string* now,
             const std::string* then, bool code) {
  if (now != nullptr && then != nullptr && *now == *then) return;
  lines.push_back({.mark = '=', .text = heading});
  const auto split = [](const std::string* text) {
    return text == nullptr ? std::vector<std::string_view>() : SplitLines(*text);
  };
  const std::vector<std::string_view> nowLines = split(now), thenLines = split(then);
  // Each state's lines follow those of the same state.
  LineState nowState = LineState::Fresh, thenState = LineState::Fresh;
  const auto add = [&](char mark, std::string_view line, LineState& state) {
    lines.push_back({.mark = mark, .text = std::string(line), .code = code, .before = state});
    if (code) state = StateAfterLine(line, state);
  };
  std::size_t at = 0;
  const auto addEqual = [&](std::size_t end) {
    for (; at < end; ++at) {
      add(' ', nowLines[at], nowState);
      thenState = nowState;
    }
  };
  for (const LineChange& change : CompareLines(nowLines, thenLines)) {
    addEqual(change.oldFirst);
    for (; at < change.oldFirst + change.oldCount; ++at) add('-', nowLines[at], nowState);
    for (std::size_t i = 0; i < change.newCount; ++i) add('+', thenLines[change.newFirst + i], thenState);
  }
  addEqual(nowLines.size());
}

}  // namespace

std::vector<SnippetRow> DifferingSnippets(std::span<const Snippet> now, std::span<const Snippet> then) {
  std::vector<SnippetRow> rows;
  for (const SnippetChange& change : CompareLibraries(now, then)) {
    SnippetRow row{.now = change.oldPosition, .then = change.newPosition};
    row.mark = !change.oldPosition ? '+' : !change.newPosition ? '-' : '~';
    const Snippet& named = change.newPosition ? then[*change.newPosition] : now[*change.oldPosition];
    row.text = std::string(1, row.mark) + " " + named.Name;
    if (row.mark == '~') row.text += WhatDiffers(change, now);
    rows.push_back(std::move(row));
  }
  return rows;
}

std::vector<DifferenceLine> DifferingLines(const Snippet* now, const Snippet* then) {
  std::vector<DifferenceLine> lines;
  const auto add = [&](const char* heading, std::string Snippet::*text, bool code) {
    AddText(lines, heading, now == nullptr ? nullptr : &(now->*text),
            then == nullptr ? nullptr : &(then->*text), code);
  };
  add("Name", &Snippet::Name, false);
  add("Attachment", &Snippet::Attachment, false);
  add("Description", &Snippet::Description, false);
  add("Code", &Snippet::Code, true);
  return lines;
}

std::vector<DeletedSnippets::Row> DeletedSnippets::Add(std::size_t version, std::span<const Snippet> snippets,
                                                       std::span<const Snippet> now) {
  std::vector<Row> rows;
  const auto places = MatchSnippets(snippets, now);
  for (std::size_t place = 0; place < snippets.size(); ++place) {
    if (!places[place] && names_.insert(snippets[place].Name).second)
      rows.push_back({.snippet = snippets[place], .version = version});
  }
  return rows;
}

}  // namespace snip
