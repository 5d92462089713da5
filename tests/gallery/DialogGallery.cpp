// Shows one of the program's dialogs, for people to look at.
//
//   dialog_gallery [about | new | settings]

#include <string>

#include "library/frmNew.h"
#include "platform/Win32Text.h"
#include "tests/unit/FakeSettingsTarget.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmSettings.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  using namespace snip;
  const std::vector<std::string> arguments = CommandLineArguments();
  const std::string name = arguments.empty() ? "about" : arguments.front();
  const auto showMessage = [](const std::string& prompt, int, const std::string& title) {
    MessageBoxA(GetActiveWindow(), prompt.c_str(), title.c_str(), MB_OK);
    return MessageResult::Ok;
  };
  CaptionPainter captions;
  if (name == "new") {
    frmNew(captions).ShowMe(nullptr, "Strings");
  } else if (name == "settings") {
    const Registry32 registry(showMessage);
    test::FakeSettingsTarget target;
    target.tips = target.menuDrag = true;
    frmSettings(target, SettingsStore(registry), captions).ShowMe(nullptr);
  } else {
    frmAbout(showMessage, captions).ShowMe(nullptr);
  }
  return 0;
}
