#include "ui/main/CodeOutput.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "platform/FlagScope.h"
#include "platform/Text.h"

namespace snip {
namespace {

std::string NoSpaces(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
  return text;
}

/// Throws `HostError`, with what the user is to be told, also when there is none.
std::unique_ptr<HostCodePane> ActiveCodePane(HostEnvironment& host) {
  try {
    if (auto pane = host.ActiveCodePane()) return pane;
  } catch (const HostGone&) {
    throw;
  } catch (const HostBusy&) {
    throw;
  } catch (const HostError&) {
    // An environment that cannot tell its active pane has none to offer.
  }
  throw HostError("No code pane is currently active.");
}

/// Why the environment refused something that the rest does not depend on; nothing when it did it.
template <class Function>
std::string RefusalOf(const Function& request) {
  try {
    request();
    return {};
  } catch (const HostGone&) {
    throw;
  } catch (const HostError& error) {
    return error.what();
  }
}

/// Half a module is taken away again; one that cannot be is shown, so that the user sees what there is.
void Withdraw(HostModule& module) {
  try {
    module.Remove();
  } catch (const HostError&) {
    try {
      module.CodePane()->Show();
    } catch (const HostError&) {
      return;  // what has failed before is told
    }
  }
}

/// What the module lacks although it holds every snippet; nothing when it lacks nothing.
std::string Fill(HostModule& module, const std::string& name, const std::vector<Snippet>& snippets) {
  std::string refusal;
  std::unique_ptr<HostCodePane> pane;
  try {
    refusal = RefusalOf([&] { module.SetName(name); });
    pane = module.CodePane();
    for (const Snippet& snippet : snippets) pane->InsertLines(pane->SelectionStartLine(), snippet.Code);
  } catch (const HostError&) {
    Withdraw(module);
    throw;
  }
  if (!refusal.empty()) refusal = "The new module could not be named '" + name + "': " + refusal;
  if (!RefusalOf([&] { pane->Show(); }).empty()) {
    if (!refusal.empty()) refusal += '\n';
    refusal += "The new module holds every snippet, but its code window could not be shown.";
  }
  return refusal;
}

void Insert(HostEnvironment& host, const std::string& code) {
  const auto pane = ActiveCodePane(host);
  pane->InsertLines(pane->SelectionStartLine(), code);
}

void MakeModule(HostEnvironment& host, const std::string& libraryText, const std::vector<Snippet>& snippets) {
  const std::string name = ModuleName(libraryText);
  const auto module = host.AddStandardModule();
  if (!module) throw HostError("No project is currently open.");
  const std::string shortcoming = Fill(*module, name, snippets);
  if (!shortcoming.empty()) throw HostError(shortcoming);
}

constexpr std::string_view kLineEnd = "\r\n";

bool IsBlank(std::string_view text) {
  return IndentationOf(text).size() == text.size();
}

/// The lines that a selection touches. One that ends before the first character of a line does not touch it.
std::string SelectedLines(HostCodePane& pane, HostSelection& selection) {
  if (selection.endLine > selection.startLine && selection.endColumn == 1) {
    --selection.endLine;
    selection.endColumn = 0;  // all of the line
  }
  return pane.Lines(selection.startLine, selection.endLine - selection.startLine + 1);
}

/// The selected part of `lines`, which are those that the selection touches. With nothing but blanks before
/// it in its line it has these as well, so that all its lines share their indentation.
std::string SelectedPart(std::string lines, const HostSelection& selection) {
  const std::size_t lastLine = lines.rfind(kLineEnd);
  const std::size_t start = lastLine == std::string::npos ? 0 : lastLine + kLineEnd.size();
  if (selection.endColumn > 0)
    lines.resize(std::min(lines.size(), start + static_cast<std::size_t>(selection.endColumn) - 1));
  const auto before = std::min(lines.size(), static_cast<std::size_t>(selection.startColumn) - 1);
  return IsBlank(std::string_view(lines).substr(0, before)) ? lines : lines.substr(before);
}

/// Without the empty lines at both ends.
std::string WithoutOuterLines(std::string code) {
  while (code.ends_with(kLineEnd)) code.resize(code.size() - kLineEnd.size());
  while (code.starts_with(kLineEnd)) code.erase(0, kLineEnd.size());
  return code;
}

bool HasField(std::string_view code, std::string_view name) {
  const std::vector<CodeField> fields = FieldsIn(code);
  return std::any_of(fields.begin(), fields.end(),
                     [name](const CodeField& field) { return EqualsIgnoringAsciiCase(field.name, name); });
}

/// What the environment knows of the place where code is pasted. Only what the code has fields for is asked.
struct PastePlace {
  HostSelection selection;
  std::string indentation;
  FieldTexts answers;  ///< By the names of the fields, as they are defined.
};

PastePlace PlaceFor(HostEnvironment& host, HostCodePane& pane, std::string_view code) {
  PastePlace place;
  place.selection = pane.Selection();
  const int line = place.selection.startLine;
  const bool inModule = line <= pane.LineCount();
  const std::string lines = inModule ? SelectedLines(pane, place.selection) : std::string();
  place.indentation = IndentationOf(std::string_view(lines).substr(0, lines.find(kLineEnd)));
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

/// What is entered for fields that nobody is asked about comes from `answers`.
FilledCode Filled(const std::string& code, const FieldTexts& answers, const FieldTexts& entered) {
  return FillFields(code, [&](const std::string& name) -> std::string {
    for (const FieldTexts* texts : {&answers, &entered}) {
      for (const auto& [field, text] : *texts) {
        if (EqualsIgnoringAsciiCase(field, name)) return text;
      }
    }
    return {};
  });
}

/// Counts from `line` and 1.
std::pair<int, int> LineAndColumn(std::string_view text, std::size_t place, int line) {
  const std::string_view before = text.substr(0, place);
  const auto ends = static_cast<int>(std::count(before.begin(), before.end(), '\n'));
  const std::size_t lastEnd = before.rfind('\n');
  const std::size_t start = lastEnd == std::string_view::npos ? 0 : lastEnd + 1;
  return {line + ends, static_cast<int>(place - start) + 1};
}

}  // namespace

std::string ModuleName(const std::string& libraryText) {
  return "mod" + NoSpaces(libraryText);
}

CodeOutput::CodeOutput(const Library& library, const SnippetEditing& editing, const SnippetView& view,
                       ShowMessageFunction showMessage)
    : library_(library), editing_(editing), view_(view), showMessage_(std::move(showMessage)) {}

void CodeOutput::PasteCode() {
  Deliver([this](HostEnvironment& host) {
    if (editing_.Shown() == nullptr) throw HostError("No code snippet is currently selected.");
    // Read first: the window may be gone when the environment has answered.
    if (const std::optional<std::string> code = view_.Code()) Insert(host, *code);
  });
}

void CodeOutput::PasteCode(std::string code) {
  Deliver([&code](HostEnvironment& host) { Insert(host, code); });
}

void CodeOutput::PasteFitted(const FieldServices& services) {
  if (editing_.Shown() == nullptr) return Tell("No code snippet is currently selected.");
  const std::optional<std::string> shown = view_.Code();
  if (!shown) return;
  // One line end more would be an empty line.
  const std::string code = shown->ends_with(kLineEnd) ? shown->substr(0, shown->size() - 2) : *shown;
  const FieldTexts date{{std::string(kDateField), services.today()}};
  const auto entered = [&](const FieldTexts& answers) -> std::optional<FieldTexts> {
    const std::vector<CodeField> asked = AskedFields(code);
    if (asked.empty()) return FieldTexts{};
    return services.ask(asked, [&](const FieldTexts& texts) { return Filled(code, answers, texts).text; });
  };
  if (host_ == nullptr) {
    if (const auto texts = entered(date)) services.copy(Filled(code, date, *texts).text);
    return;
  }
  Deliver([&](HostEnvironment& host) {
    const auto pane = ActiveCodePane(host);
    PastePlace place = PlaceFor(host, *pane, code);
    place.answers.insert(date.begin(), date.end());
    const auto texts = entered(place.answers);
    if (!texts) return;
    // The environment's user may have moved on while the fields were asked for; the place stays.
    const FilledCode filled = Filled(code, place.answers, *texts);
    const int line = place.selection.startLine;
    const int before = pane->LineCount();
    pane->InsertLines(line, Indented(filled.text, place.indentation));
    if (place.answers.contains(std::string(kSelectionField)) && !place.selection.empty()) {
      // Last, so that a failure leaves too much rather than too little.
      const int inserted = pane->LineCount() - before;
      pane->DeleteLines(line + inserted, place.selection.endLine - line + 1);
    }
    if (!filled.caret) return;
    const auto [caretLine, column] = LineAndColumn(filled.text, *filled.caret, line);
    pane->SetCaret(caretLine, column + static_cast<int>(place.indentation.size()));
  });
}

std::optional<std::string> CodeOutput::TakeCode() {
  std::optional<std::string> taken;
  Deliver([&taken](HostEnvironment& host) {
    const auto pane = ActiveCodePane(host);
    HostSelection selection = pane->Selection();
    std::string code;
    if (!selection.empty()) {
      const std::string lines = SelectedLines(*pane, selection);
      code = SelectedPart(lines, selection);
    } else if (selection.startLine <= pane->LineCount()) {
      code = pane->ProcedureCodeAt(selection.startLine);
    }
    code = WithoutOuterLines(WithoutCommonIndentation(code));
    if (code.empty()) throw HostError("Nothing is selected, and the caret is in no procedure.");
    taken = std::move(code);
  });
  return taken;
}

void CodeOutput::PasteToNewModule(const std::string& libraryText) {
  Deliver([this, &libraryText](HostEnvironment& host) {
    // In place of a file that is no library, the one before is in memory and none is shown.
    if (!editing_.ListsSnippets() && !library_.Snippets.empty())
      throw HostError("No code snippet is currently selected.");
    // Taken before the environment is asked for anything: the library may be another one when it has
    // answered.
    const std::vector<Snippet> snippets = library_.Snippets;
    MakeModule(host, libraryText, snippets);
  });
}

void CodeOutput::PasteToNewModule(const std::string& libraryText, const std::vector<Snippet>& snippets) {
  Deliver([&](HostEnvironment& host) { MakeModule(host, libraryText, snippets); });
}

/// Runs a delivery, unless the user asks for it while another one waits for the environment.
void CodeOutput::Deliver(const std::function<void(HostEnvironment&)>& delivery) {
  if (delivering_) return;
  if (host_ == nullptr) return Tell("No development environment is connected.");
  const FlagScope scope(delivering_);
  // While it is waited for, it may be gone, or another one have taken its place: then nothing is left to say.
  HostEnvironment* const asked = host_;
  try {
    delivery(*asked);
  } catch (const HostGone& error) {
    if (host_ == asked && !asked->Lost() && host_ == asked) Tell(error.what());
  } catch (const HostError& error) {
    if (host_ == asked) Tell(error.what());
  }
}

void CodeOutput::Tell(const std::string& prompt) const {
  showMessage_(prompt, MessageStyle::kInformation, kMainWindowTitle);
}

}  // namespace snip
