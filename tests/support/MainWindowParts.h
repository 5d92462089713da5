#pragma once

#include <utility>

#include "library/LibraryFolder.h"
#include "tests/support/TestDesktop.h"
#include "tests/support/TestRegistry.h"
#include "ui/main/frmAddIn.h"

namespace snip::test {

/// What the real main window is made with: an empty folder of libraries, an empty registry, and a message box
/// that the test answers.
class MainWindowParts {
 protected:
  explicit MainWindowParts(ShowMessageFunction showMessage) : showMessage_(std::move(showMessage)) {}

  frmAddIn::Services Services() {
    return {.store = store_,
            .settings = settings_,
            .sounds = sounds_,
            .caption = captions_,
            .showMessage = showMessage_,
            .unloaded = [] {},
            .hidden = [] {}};
  }

  TemporaryFolder folder_;
  LibraryFolder store_{folder_.path()};
  TestRegistry testRegistry_;
  ShowMessageFunction showMessage_;
  Registry32 registry_{showMessage_};
  SoundEffects sounds_{registry_};
  SettingsStore settings_{registry_};
  CaptionPainter captions_;
};

}  // namespace snip::test
