#include "ui/main/CodeOutput.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "platform/FlagScope.h"

namespace snip {
namespace {

std::string NoSpaces(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
  return text;
}

/// Throws `HostError` with a message for the user, also if no pane is active.
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

/// The active code window, and the place in it to paste at.
struct PasteTarget {
  PasteTarget(HostEnvironment& host, const std::string& code, const FieldTexts& known)
      : pane(ActiveCodePane(host)), place(PlaceFor(host, *pane, code)) {
    place.answers.insert(known.begin(), known.end());
  }

  std::unique_ptr<HostCodePane> pane;
  PastePlace place;
};

/// The module and the number of lines of a pane, to notice that another pane is active or that it has
/// changed.
std::pair<std::string, int> MarksOf(HostCodePane& pane) {
  return {pane.ModuleName(), pane.LineCount()};
}

/// Makes a request that may fail; why the environment refused it, or an empty text.
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

/// Removes an incomplete module or, if that fails, shows it to the user.
void Withdraw(HostModule& module) {
  try {
    module.Remove();
  } catch (const HostError&) {
    try {
      module.CodePane()->Show();
    } catch (const HostError&) {
      return;  // the caller reports the first failure
    }
  }
}

/// Names the module, writes the snippets into it and shows it. Throws, and removes it, if a snippet cannot be
/// written; other failures are returned in words for the user.
std::string Fill(HostModule& module, const std::string& name, const std::vector<Snippet>& snippets) {
  std::string refusal;
  std::unique_ptr<HostCodePane> pane;
  try {
    refusal = RefusalOf([&] { module.SetName(name); });
    pane = module.CodePane();
    for (const Snippet& snippet : snippets) pane->InsertLines(pane->Selection().startLine, snippet.Code);
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
  pane->InsertLines(pane->Selection().startLine, code);
}

void MakeModule(HostEnvironment& host, const std::string& libraryText, const std::vector<Snippet>& snippets) {
  const std::string name = ModuleName(libraryText);
  const auto module = host.AddStandardModule();
  if (!module) throw HostError("No project is currently open.");
  const std::string shortcoming = Fill(*module, name, snippets);
  if (!shortcoming.empty()) throw HostError(shortcoming);
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

void CodeOutput::PasteWithFields(const FieldServices& services) {
  if (editing_.Shown() == nullptr) return Tell("No code snippet is currently selected.");
  const std::optional<std::string> shown = view_.Code();
  if (!shown) return;
  // A final line ending would become an empty line.
  const std::string code = shown->ends_with("\r\n") ? shown->substr(0, shown->size() - 2) : *shown;
  const std::vector<CodeField> asked = AskedFields(code);
  const auto entered = [&](const FieldTexts& answers) -> std::optional<FieldTexts> {
    if (asked.empty()) return FieldTexts{};
    return services.ask(asked, [&](const FieldTexts& texts) { return FillFrom(code, answers, texts).text; });
  };
  const FieldTexts date{{std::string(kDateField), services.today()}};
  if (host_ == nullptr) {
    if (const auto texts = entered(date)) services.copy(FillFrom(code, date, *texts).text);
    return;
  }
  Deliver([&](HostEnvironment& host) {
    PasteTarget target(host, code, date);
    if (asked.empty()) return PasteAt(*target.pane, target.place, FillFrom(code, target.place.answers, {}));
    const auto marks = MarksOf(*target.pane);
    // The environment goes on working during the dialog, and may disconnect: keep none of its objects.
    target.pane.reset();
    const auto texts = entered(target.place.answers);
    if (!texts) return;
    constexpr const char* changed = "The code window has changed in the meantime. Please try again.";
    if (host_ != &host) return host_ == nullptr ? void() : Tell(changed);
    PasteTarget now(host, code, date);
    if (now.place != target.place || MarksOf(*now.pane) != marks) throw HostError(changed);
    PasteAt(*now.pane, now.place, FillFrom(code, now.place.answers, *texts));
  });
}

std::optional<std::string> CodeOutput::TakeCode() {
  std::optional<std::string> taken;
  Deliver([&taken](HostEnvironment& host) {
    std::string code = CodeAtCaret(*ActiveCodePane(host));
    if (code.empty()) throw HostError("Nothing is selected, and the caret is in no procedure.");
    taken = std::move(code);
  });
  return taken;
}

void CodeOutput::PasteToNewModule(const std::string& libraryText) {
  Deliver([this, &libraryText](HostEnvironment& host) {
    // While the open file is not a valid library, the previous one is in memory but not shown.
    if (!editing_.ListsSnippets() && !library_.Snippets.empty())
      throw HostError("No code snippet is currently selected.");
    // A copy, because another library may be open when the environment has answered.
    const std::vector<Snippet> snippets = library_.Snippets;
    MakeModule(host, libraryText, snippets);
  });
}

void CodeOutput::PasteToNewModule(const std::string& libraryText, const std::vector<Snippet>& snippets) {
  Deliver([&](HostEnvironment& host) { MakeModule(host, libraryText, snippets); });
}

/// Runs a delivery and reports its failure. Does nothing while another one waits for the environment.
void CodeOutput::Deliver(const std::function<void(HostEnvironment&)>& delivery) {
  if (delivering_) return;
  if (host_ == nullptr) return Tell("No development environment is connected.");
  const FlagScope scope(delivering_);
  // During the delivery it may disconnect, or another one connect: then its failure does not matter.
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
