#include <windows.h>
#include <commctrl.h>

#include "app/StartMode.h"
#include "app/StartUp.h"
#include "library/LibraryFolder.h"
#include "platform/Com.h"
#include "platform/Registry32.h"
#include "platform/Win32Text.h"
#include "ui/commandbar/OleDragDrop.h"
#include "ui/commandbar/SoundEffects.h"
#include "ui/dialogs/frmMsg.h"
#include "ui/main/frmAddIn.h"

namespace {

using namespace snip;

/// The composition root: makes the parts and gives each what it needs. Registry errors are shown in the
/// message box, the message box plays sounds, and sounds are looked up in the registry: that ring is closed
/// here.
class Application {
 public:
  int Run(StartMode mode) {
    bool windowShown = false;
    StartUp(mode, registry_, showMessage_, [&] { windowShown = mainWindow_.Show(); });
    return windowShown ? MessageLoop() : 0;
  }

 private:
  int MessageLoop() {
    MSG message{};
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
      if (mainWindow_.PreTranslate(message)) continue;
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
    return static_cast<int>(message.wParam);
  }

  ShowMessageFunction showMessage_ = [this](const std::string& prompt, int style, const std::string& title) {
    return ShowMessage(sounds_, prompt, style, title);
  };
  Registry32 registry_{showMessage_};
  SoundEffects sounds_{registry_};
  LibraryFolder folder_{ProgramDirectory()};
  SettingsStore settings_{registry_};
  CaptionPainter captions_;
  frmAddIn mainWindow_{{.store = folder_,
                        .settings = settings_,
                        .sounds = sounds_,
                        .caption = captions_,
                        .showMessage = showMessage_,
                        .unloaded = [] { PostQuitMessage(0); },
                        .hidden = [] {}}};
};

}  // namespace

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, LPSTR /*commandLine*/, int /*show*/) {
  const ComApartment apartment;  // assistive programs reach the windows through it
  const OleThread dragging;      // what is dragged out of toolbars and onto them
  InitCommonControls();
  Application application;
  return application.Run(StartModeFromArguments(CommandLineArguments()));
}
