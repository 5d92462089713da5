#pragma once

#include <string>
#include <vector>

#include "library/Library.h"
#include "library/LibraryFolder.h"
#include "tests/support/TestDesktop.h"
#include "tests/support/TestRegistry.h"
#include "ui/caption/CaptionPainter.h"
#include "ui/main/frmAddIn.h"

namespace snip::bench {

/// The program's main window in this process, with a library of its own and an empty registry.
class RealWindow {
 public:
  explicit RealWindow(const std::vector<Snippet>& snippets);

  /// A library beside the one that is open.
  void AddLibrary(const std::string& name, const std::vector<Snippet>& snippets) const;

  HWND hWnd() const { return window_.hWnd(); }
  HWND Control(int id) const { return test::FindControl(hWnd(), id); }
  /// The rich-edit control that shows the code at this moment.
  HWND Code() const { return GetDlgItem(Control(frmAddIn::kCodeId), BnRichEdit::kControlId); }

 private:
  test::TemporaryFolder folder_;
  test::TestRegistry testRegistry_;
  LibraryFolder store_{folder_.path()};
  ShowMessageFunction showMessage_ = [](const std::string&, int, const std::string&) {
    return MessageResult::No;
  };
  Registry32 registry_{showMessage_};
  SoundEffects sounds_{registry_};
  SettingsStore settings_{registry_};
  CaptionPainter captions_;
  frmAddIn window_{{.store = store_,
                    .settings = settings_,
                    .sounds = sounds_,
                    .caption = captions_,
                    .showMessage = showMessage_,
                    .unloaded = [] {},
                    .hidden = [] {}}};
};

}  // namespace snip::bench
