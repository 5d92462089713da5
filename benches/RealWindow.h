#pragma once

#include <string>
#include <vector>

#include "library/Library.h"
#include "tests/support/MainWindowParts.h"

namespace snip::bench {

/// The program's main window in this process, with a library of its own and an empty registry.
class RealWindow : test::MainWindowParts {
 public:
  explicit RealWindow(const std::vector<Snippet>& snippets);

  /// A library beside the one that is open.
  void AddLibrary(const std::string& name, const std::vector<Snippet>& snippets) const;

  HWND hWnd() const { return window_.hWnd(); }
  HWND Control(int id) const { return test::FindControl(hWnd(), id); }
  /// The rich-edit control that shows the code at this moment.
  HWND Code() const { return GetDlgItem(Control(frmAddIn::kCodeId), BnRichEdit::kControlId); }

 private:
  frmAddIn window_{Services()};
};

}  // namespace snip::bench
