#include "app/ComHostEnvironment.h"

#include <utility>

namespace snip {
namespace {

class ComCodePane : public HostCodePane {
 public:
  explicit ComCodePane(host::CodePane pane) : pane_(std::move(pane)) {}

  int SelectionStartLine() override { return pane_.GetSelection().startLine; }
  void InsertLines(int line, const std::string& text) override { pane_.CodeModule().InsertLines(line, text); }
  void Show() override { pane_.Show(); }

 private:
  host::CodePane pane_;
};

class ComModule : public HostModule {
 public:
  explicit ComModule(host::VBComponent component) : component_(std::move(component)) {}

  void SetName(const std::string& name) override { component_.SetName(name); }
  std::unique_ptr<HostCodePane> CodePane() override {
    return std::make_unique<ComCodePane>(component_.CodeModule().CodePane());
  }

 private:
  host::VBComponent component_;
};

}  // namespace

ComHostEnvironment::ComHostEnvironment(const host::VBE& root, std::function<void()> lost)
    : root_(root), lost_(std::move(lost)) {}

// This object may go while one of these waits for the environment; afterwards they use only what they hold
// themselves.

std::unique_ptr<HostCodePane> ComHostEnvironment::ActiveCodePane() {
  host::CodePane pane = root_.ActiveCodePane();
  if (!pane.exists()) return nullptr;
  return std::make_unique<ComCodePane>(std::move(pane));
}

std::unique_ptr<HostModule> ComHostEnvironment::AddStandardModule() {
  const host::VBProject project = root_.ActiveVBProject();
  if (!project.exists()) return nullptr;
  return std::make_unique<ComModule>(project.VBComponents().Add(host::kStandardModule));
}

void ComHostEnvironment::Activate() {
  HWND window = nullptr;
  try {
    window = root_.MainWindow().HWnd();
  } catch (const HostError&) {
    return;
  }
  // Asked of the window without waiting for its process, which may be busy.
  if (IsIconic(window) != 0) ShowWindowAsync(window, SW_RESTORE);
  SetForegroundWindow(window);
}

}  // namespace snip
