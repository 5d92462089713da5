#include "benches/RealWindow.h"

#include "benches/BareWindow.h"
#include "library/BnsFormat.h"

namespace snip::bench {

RealWindow::RealWindow(const std::vector<Snippet>& snippets)
    : MainWindowParts([](const std::string&, int, const std::string&) { return MessageResult::No; }) {
  folder_.Write("Bench.bns", WriteBns(snippets));
  window_.Show();
  AnswerAll();
}

void RealWindow::AddLibrary(const std::string& name, const std::vector<Snippet>& snippets) const {
  folder_.Write(name + ".bns", WriteBns(snippets));
}

}  // namespace snip::bench
