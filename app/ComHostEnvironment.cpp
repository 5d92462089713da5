#include "app/ComHostEnvironment.h"

#include <utility>

namespace snip {
namespace {

/// Why a project takes no change now, in words for the user; empty when it tells nothing of it. `projectOf`
/// may throw `HostError`.
template <class ProjectOf>
std::string WhyClosed(const ProjectOf& projectOf) {
  try {
    const host::VBProject& project = projectOf();
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

class ComCodePane : public HostCodePane {
 public:
  enum class Of { NewModule, AnyModule };

  ComCodePane(host::VBE root, host::CodePane pane, Of kind)
      : root_(std::move(root)), pane_(std::move(pane)), kind_(kind) {}

  void InsertLines(int line, const std::string& text) override {
    Change([&](const host::CodeModule& module) { module.InsertLines(line, text); });
  }
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
  std::string Lines(int first, int count) override {
    return Ask([&](const host::CodeModule& module) { return module.Lines(first, count); });
  }
  int LineCount() override {
    return Ask([](const host::CodeModule& module) { return module.CountOfLines(); });
  }
  void DeleteLines(int first, int count) override {
    Change([&](const host::CodeModule& module) { module.DeleteLines(first, count); });
  }
  std::string ProcedureAt(int line) override {
    return Ask([line](const host::CodeModule& module) { return module.ProcOfLine(line).name; });
  }
  std::string ProcedureCodeAt(int line) override {
    return Ask([line](const host::CodeModule& module) -> std::string {
      const host::Procedure procedure = module.ProcOfLine(line);
      if (procedure.name.empty()) return {};
      return module.Lines(module.ProcStartLine(procedure), module.ProcCountLines(procedure));
    });
  }
  std::string ModuleName() override { return pane_.CodeModule().Parent().Name(); }

 private:
  /// Makes a request of the module; a refusal tells why when the project says so, else begins with `hint`.
  template <class Request>
  auto Ask(const Request& request, const char* hint = "") const -> decltype(request(host::CodeModule())) {
    try {
      return request(pane_.CodeModule());
    } catch (const HostRefused& refusal) {
      const std::string reason = WhyClosed([this] { return Project(); });
      throw HostError(reason.empty() ? hint + std::string(refusal.what()) : reason);
    }
  }
  template <class Request>
  void Change(const Request& request) const {
    Ask(request, kind_ == Of::AnyModule ? "The module may be read-only. " : "");
  }
  host::VBProject Project() const {
    try {
      return pane_.CodeModule().Parent().Collection().Parent();
    } catch (const HostError&) {
      return root_.ActiveVBProject();  // a locked project does not show its parts
    }
  }

  host::VBE root_;
  host::CodePane pane_;
  Of kind_;
};

class ComModule : public HostModule {
 public:
  ComModule(host::VBE root, host::VBComponents components, host::VBComponent component)
      : root_(std::move(root)), components_(std::move(components)), component_(std::move(component)) {}

  void SetName(const std::string& name) override { component_.SetName(name); }
  std::unique_ptr<HostCodePane> CodePane() override {
    return std::make_unique<ComCodePane>(root_.Share(), component_.CodeModule().CodePane(),
                                         ComCodePane::Of::NewModule);
  }
  void Remove() override {
    if (component_.exists()) components_.Remove(component_);
  }

 private:
  host::VBE root_;
  host::VBComponents components_;
  host::VBComponent component_;
};

}  // namespace

ComHostEnvironment::ComHostEnvironment(const host::VBE& root, std::function<bool()> lost)
    : root_(root), lost_(std::move(lost)) {}

// This object may go while one of these waits for the environment; afterwards they use only what they hold
// themselves.

std::unique_ptr<HostCodePane> ComHostEnvironment::ActiveCodePane() {
  host::VBE root = root_.Share();
  host::CodePane pane = root.ActiveCodePane();
  if (!pane.exists()) return nullptr;
  return std::make_unique<ComCodePane>(std::move(root), std::move(pane), ComCodePane::Of::AnyModule);
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
  } catch (const HostRefused&) {
    const std::string reason = WhyClosed([&project]() -> const host::VBProject& { return project; });
    if (reason.empty()) throw;
    throw HostError(reason);
  }
}

bool ComHostEnvironment::HasWindow(void* window) {
  const auto rootOwner = [](HWND of) { return GetAncestor(of, GA_ROOTOWNER); };
  try {
    const HWND root = rootOwner(static_cast<HWND>(window));
    const HWND main = IsWindow(mainWindow_) != 0 ? mainWindow_ : root_.MainWindow().HWnd();
    return root != nullptr && root == rootOwner(main);
  } catch (const HostBusy&) {
    throw;
  } catch (const HostError&) {
    return false;
  }
}

}  // namespace snip
