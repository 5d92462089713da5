#include "app/ComHostEnvironment.h"

#include <utility>

namespace snip {
namespace {

class ComCodePane : public HostCodePane {
 public:
  ComCodePane(host::VBE root, host::CodePane pane) : root_(std::move(root)), pane_(std::move(pane)) {}

  void InsertLines(int line, const std::string& text) override { pane_.CodeModule().InsertLines(line, text); }
  void Show() override {
    pane_.Show();
    try {
      root_.SetActiveCodePane(pane_);  // VBA's editor does not do so by itself
    } catch (const HostGone&) {
      throw;
    } catch (const HostError&) {
      return;  // it is shown
    }
  }
  HostSelection Selection() override {
    const host::CodePane::Selection selection = pane_.GetSelection();
    return {.startLine = selection.startLine,
            .startColumn = selection.startColumn,
            .endLine = selection.endLine,
            .endColumn = selection.endColumn};
  }
  void SetCaret(int line, int column) override { pane_.SetSelection({line, column, line, column}); }
  std::string Lines(int first, int count) override { return pane_.CodeModule().Lines(first, count); }
  int LineCount() override { return pane_.CodeModule().CountOfLines(); }
  void DeleteLines(int first, int count) override { pane_.CodeModule().DeleteLines(first, count); }
  std::string ProcedureAt(int line) override { return pane_.CodeModule().ProcOfLine(line).name; }
  std::string ProcedureCodeAt(int line) override {
    const host::CodeModule module = pane_.CodeModule();
    const host::Procedure procedure = module.ProcOfLine(line);
    if (procedure.name.empty()) return {};
    return module.Lines(module.ProcStartLine(procedure), module.ProcCountLines(procedure));
  }
  std::string ModuleName() override { return pane_.CodeModule().Parent().Name(); }

 private:
  host::VBE root_;
  host::CodePane pane_;
};

class ComModule : public HostModule {
 public:
  ComModule(host::VBE root, host::VBComponents components, host::VBComponent component)
      : root_(std::move(root)), components_(std::move(components)), component_(std::move(component)) {}

  void SetName(const std::string& name) override { component_.SetName(name); }
  std::unique_ptr<HostCodePane> CodePane() override {
    return std::make_unique<ComCodePane>(root_.Share(), component_.CodeModule().CodePane());
  }
  void Remove() override {
    if (component_.exists()) components_.Remove(component_);
  }

 private:
  host::VBE root_;
  host::VBComponents components_;
  host::VBComponent component_;
};

/// Why a project takes no module now, in words for the user; empty when it tells nothing of it.
std::string WhyClosed(const host::VBProject& project) {
  try {
    if (project.Protection() == host::kLocked) {
      return "The project is locked: unlock it in its properties, then try again.";
    }
    if (project.Mode() != host::kDesignMode)
      return "The project is running or in break mode: end that, then try again.";
  } catch (const HostError&) {
    // Projects of Visual Basic have neither.
  }
  return {};
}

}  // namespace

ComHostEnvironment::ComHostEnvironment(const host::VBE& root, std::function<bool()> lost)
    : root_(root), lost_(std::move(lost)) {}

// This object may go while one of these waits for the environment; afterwards they use only what they hold
// themselves.

std::unique_ptr<HostCodePane> ComHostEnvironment::ActiveCodePane() {
  host::CodePane pane = root_.ActiveCodePane();
  if (!pane.exists()) return nullptr;
  return std::make_unique<ComCodePane>(root_.Share(), std::move(pane));
}

std::string ComHostEnvironment::ProjectName() {
  const host::VBProject project = root_.ActiveVBProject();
  return project.exists() ? project.Name() : std::string();
}

std::unique_ptr<HostModule> ComHostEnvironment::AddStandardModule() {
  host::VBE root = root_.Share();
  const host::VBProject project = root.ActiveVBProject();
  if (!project.exists()) return nullptr;
  try {
    host::VBComponents components = project.VBComponents();
    host::VBComponent component = components.Add(host::kStandardModule);
    return std::make_unique<ComModule>(std::move(root), std::move(components), std::move(component));
  } catch (const HostBusy&) {
    throw;
  } catch (const HostError&) {
    const std::string reason = WhyClosed(project);
    if (reason.empty()) throw;
    throw HostError(reason);
  }
}

bool ComHostEnvironment::IsProcess(unsigned long process) {
  try {
    DWORD own = 0;
    GetWindowThreadProcessId(root_.MainWindow().HWnd(), &own);
    return own == process;
  } catch (const HostError&) {
    return false;
  }
}

}  // namespace snip
