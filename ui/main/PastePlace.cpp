#include "ui/main/PastePlace.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "library/BnsRules.h"
#include "library/LineEndings.h"
#include "platform/Text.h"

namespace snip {
namespace {

/// The last line of a selection; a line of which no character is selected does not count.
int LastLine(const HostSelection& selection) {
  const bool beforeLine = selection.endLine > selection.startLine && selection.endColumn == 1;
  return beforeLine ? selection.endLine - 1 : selection.endLine;
}

std::string SelectedLines(HostCodePane& pane, const HostSelection& selection) {
  return pane.Lines(selection.startLine, LastLine(selection) - selection.startLine + 1);
}

/// The selected code. If only blanks are before it in its first line they are included, so that all lines
/// share their indentation.
std::string SelectedCode(HostCodePane& pane, const HostSelection& selection) {
  std::string code = SelectedLines(pane, selection);
  if (LastLine(selection) == selection.endLine) {
    const std::size_t end = code.rfind('\n');
    const std::size_t start = end == std::string::npos ? 0 : end + 1;
    code.resize(std::min(code.size(), start + static_cast<std::size_t>(selection.endColumn) - 1));
  }
  const auto before = std::min(code.size(), static_cast<std::size_t>(selection.startColumn) - 1);
  return IsBlank(std::string_view(code).substr(0, before)) ? code : code.substr(before);
}

bool HasField(std::string_view code, std::string_view name) {
  const std::vector<CodeField> fields = FieldsIn(code);
  return std::any_of(fields.begin(), fields.end(),
                     [name](const CodeField& field) { return EqualsIgnoringAsciiCase(field.name, name); });
}

}  // namespace

FilledCode FillFrom(const std::string& code, const FieldTexts& known, const FieldTexts& entered) {
  return FillFields(code, [&](const std::string& name) -> std::string {
    for (const FieldTexts* texts : {&known, &entered}) {
      for (const auto& [field, text] : *texts) {
        if (EqualsIgnoringAsciiCase(field, name)) return text;
      }
    }
    return {};
  });
}

PastePlace PlaceFor(HostEnvironment& host, HostCodePane& pane, const std::string& code) {
  PastePlace place;
  place.selection = pane.Selection();
  const int line = place.selection.startLine;
  const bool inModule = line <= pane.LineCount();
  const std::string lines = inModule ? SelectedLines(pane, place.selection) : std::string();
  place.indentation = IndentationOf(std::string_view(lines).substr(0, lines.find(kCrLf)));
  const auto answer = [&](std::string_view field, const auto& ask) {
    if (HasField(code, field)) place.answers.emplace(field, ask());
  };
  answer(kSelectionField,
         [&] { return place.selection.empty() ? std::string() : WithoutCommonIndentation(lines); });
  answer(kModuleField, [&] { return pane.ModuleName(); });
  answer(kProcedureField, [&] { return inModule ? pane.ProcedureAt(line) : std::string(); });
  answer(kProjectField, [&] { return host.ProjectName(); });
  return place;
}

void PasteAt(HostCodePane& pane, const PastePlace& place, const FilledCode& code) {
  const int line = place.selection.startLine;
  const int before = pane.LineCount();
  pane.InsertLines(line, Indented(code.text, place.indentation));
  if (place.answers.contains(std::string(kSelectionField)) && !place.selection.empty()) {
    // After the insertion, so that a failure loses no lines.
    const int inserted = pane.LineCount() - before;
    pane.DeleteLines(line + inserted, LastLine(place.selection) - line + 1);
  }
  if (!code.caret) return;
  const std::string_view above = std::string_view(code.text).substr(0, *code.caret);
  const std::size_t end = above.rfind('\n');
  const std::size_t column = above.size() - (end == std::string_view::npos ? 0 : end + 1);
  pane.SetCaret(line + static_cast<int>(std::count(above.begin(), above.end(), '\n')),
                static_cast<int>(place.indentation.size() + column) + 1);
}

std::string CodeAtCaret(HostCodePane& pane) {
  const HostSelection selection = pane.Selection();
  std::string code;
  if (!selection.empty()) {
    code = SelectedCode(pane, selection);
  } else if (selection.startLine <= pane.LineCount()) {
    code = pane.ProcedureCodeAt(selection.startLine);
  }
  code = WithoutCommonIndentation(code);
  while (code.ends_with(kCrLf)) code.resize(code.size() - kCrLf.size());
  while (code.starts_with(kCrLf)) code.erase(0, kCrLf.size());
  return code;
}

Snippet SnippetOfCode(std::string code) {
  Snippet snippet = DefaultSnippet();
  std::string name = NameFromCode(code);
  if (!name.empty() && !EndsSnippetList(name)) snippet.Name = std::move(name);
  snippet.Code = std::move(code);
  return snippet;
}

}  // namespace snip
