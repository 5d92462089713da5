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

/// Why the environment refused the name; nothing when it took it.
std::string Rename(HostModule& module, const std::string& name) {
  try {
    module.SetName(name);
    return {};
  } catch (const HostGone&) {
    throw;
  } catch (const HostError& error) {
    return error.what();
  }
}

}  // namespace

std::string ModuleName(const std::string& libraryText) {
  return "mod" + NoSpaces(libraryText);
}

CodeOutput::CodeOutput(const Library& library, const SnippetView& view, ShowMessageFunction showMessage)
    : library_(library), view_(view), showMessage_(std::move(showMessage)) {}

void CodeOutput::PasteCode() {
  Deliver([this](HostEnvironment& host) {
    if (view_.SelectedRow() < 0) return Tell("No code snippet is currently selected.");
    // Read first: the window may be gone when the environment has answered.
    const std::optional<std::string> code = view_.Code();
    if (!code) return;
    const auto pane = host.ActiveCodePane();
    if (!pane) return Tell("No code pane is currently active.");
    pane->InsertLines(pane->SelectionStartLine(), *code);
    if (host_ == &host) host.Activate();
  });
}

void CodeOutput::PasteToNewModule(const std::string& libraryText) {
  Deliver([this, &libraryText](HostEnvironment& host) {
    // In place of a file that is no library, the one before is in memory and none is shown.
    if (view_.RowCount() != library_.LastIndex() + 1) return Tell("No code snippet is currently selected.");
    const std::string name = ModuleName(libraryText);
    // Taken before the environment is asked for anything: the library may be another one when it has
    // answered.
    const std::vector<Snippet> snippets = library_.Snippets;
    const auto module = host.AddStandardModule();
    if (!module) return Tell("No project is currently open.");
    const std::string refusal = Rename(*module, name);
    const auto pane = module->CodePane();
    for (const Snippet& snippet : snippets) pane->InsertLines(pane->SelectionStartLine(), snippet.Code);
    pane->Show();
    if (!refusal.empty()) return Tell("The new module could not be named '" + name + "': " + refusal);
    if (host_ == &host) host.Activate();
  });
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
  } catch (const HostGone&) {
    if (host_ == asked) asked->Lost();
  } catch (const HostError& error) {
    if (host_ == asked) Tell(error.what());
  }
}

void CodeOutput::Tell(const std::string& prompt) const {
  showMessage_(prompt, MessageStyle::kInformation, kMainWindowTitle);
}

}  // namespace snip
