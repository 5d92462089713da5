#include <windows.h>
#include <commctrl.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/AddInIdentity.h"
#include "app/AddInLists.h"
#include "app/AddInWindow.h"
#include "app/ComRegistration.h"
#include "app/ComServer.h"
#include "app/Connect.h"
#include "app/MessageFilter.h"
#include "app/RegistrationRules.h"
#include "app/Rights.h"
#include "app/ServerLife.h"
#include "app/StartMode.h"
#include "app/StartUp.h"
#include "history/LibraryKeeper.h"
#include "history/SystemFiles.h"
#include "library/LibraryFolder.h"
#include "platform/Com.h"
#include "platform/Registry32.h"
#include "platform/Win32Text.h"
#include "ui/commandbar/SoundEffects.h"
#include "ui/dialogs/frmMsg.h"
#include "ui/main/frmAddIn.h"

namespace {

using namespace snip;

/// How long a server waits for an environment.
constexpr UINT kPatienceMs = 60000;
/// How long it waits for the first call of a client that has been given its class already.
constexpr UINT kLateMs = 1000;

/// The composition root: makes the parts and gives each what it needs. Registry errors are shown in the
/// message box, the message box plays sounds, and sounds are looked up in the registry: that ring is closed
/// here.
class Application {
 public:
  int Run(StartMode mode) {
    bool windowShown = false;
    StartUp(mode, registry_, showMessage_,
            {.enter =
                 [] {
                   RegisterAddIn();
                   return AfterEntering(EnterServer());
                 },
             .enterAgain =
                 [] {
                   const bool upgraded = LibraryMissing();  // as after a version that had none
                   if (RegisterWhereMoved(RegistrationRoots())) RegisterLibraries();
                   if (upgraded && AnyRegistered(RegistrationRoots())) RegisterInKeys();
                 }},
            [&] { windowShown = mainWindow_.Show(nullptr); });
    return windowShown ? MessageLoop() : 0;
  }

  /// Enters the program, or takes it away; the exit code is 0 when all of that came about.
  int ChangeRegistration(StartMode mode, bool silent) {
    bool done = false;
    std::string remarks;
    if (mode == StartMode::Register) {
      if (!AddInRegistered()) RegisterAddIn();
      RegistrationFacts facts = EnterServer();
      facts.replaceable = RightsAreSplit() && RunsElevated() && ReplaceableByOrdinaryUsers(WideProgramPath());
      done = facts.server != Entered::Nowhere && facts.listed != Entered::Nowhere && facts.inKeys;
      remarks = AfterEntering(facts);
    } else {
      const bool serverGone = UnregisterServer(RegistrationRoots());
      // The lists of Visual Basic have one line for all copies of the program.
      const bool listGone = AnyRegistered(RegistrationRoots()) ? UnregisterOwnLibraries() : UnregisterAddIn();
      done = serverGone && listGone;
      remarks = AfterTakingAway(serverGone, listGone);
    }
    if (!silent && !remarks.empty()) showMessage_(remarks, MessageStyle::kOk, kAddInName);
    return done ? 0 : 1;
  }

  /// Serves the development environments that have the add-in loaded.
  int Serve(ServerLife& life) {
    serving_ = true;
    const MessageFilter filter;
    const ComServer server(kConnectClassId, life, [&](REFIID iid, void** object) {
      const ComPtr<Connect> connect(new Connect(life, addInWindow_));
      return connect->QueryInterface(iid, object);
    });
    if (!server.started()) return 1;
    for (;;) {
      const int exitCode = MessageLoop();
      if (!life.Over()) continue;
      life.DisconnectObjects();
      return exitCode;
    }
  }

 private:
  static RegistrationFacts EnterServer() {
    constexpr Entered kRoots[] = {Entered::All, Entered::User};
    const bool inKeys = RegisterInKeys();
    const std::optional<std::size_t> root = RegisterServer(RegistrationRoots());
    return {.server = root ? kRoots[*root] : Entered::Nowhere,
            .listed = WhereAddInIsRegistered(),
            .hiddenFromAdministrators = RightsAreSplit(),
            .inKeys = inKeys};
  }

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
    mainWindow_.ShowForMessage();
    return ShowMessage(sounds_, prompt, style, title);
  };
  Registry32 registry_{showMessage_};
  SoundEffects sounds_{registry_};
  std::shared_ptr<Patience> patience_ = std::make_shared<Patience>();
  LibraryFolder folder_{ProgramDirectory(), patience_};
  SystemFiles files_{patience_};
  LibraryKeeper keeper_{{.folder = folder_,
                         .files = files_,
                         .root = HistoryRoot(),
                         .pathForFiles = &Utf8FromAnsi,
                         .pathFromFiles = &AnsiFromUtf8,
                         .limits = &UserLimits}};
  SettingsStore settings_{registry_};
  CaptionPainter captions_;
  bool serving_ = false;
  AddInWindow addInWindow_{mainWindow_};
  frmAddIn mainWindow_{{.store = keeper_,
                        .keeper = &keeper_,
                        .settings = settings_,
                        .sounds = sounds_,
                        .caption = captions_,
                        .showMessage = showMessage_,
                        .unloaded =
                            [this] {
                              // A server lives on without its window.
                              if (!serving_) PostQuitMessage(0);
                              addInWindow_.OnUnloaded();
                            },
                        .hidden = [this] { addInWindow_.OnHidden(); }}};
};

}  // namespace

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, LPSTR /*commandLine*/, int /*show*/) {
  const std::vector<std::string> arguments = CommandLineArguments();
  const StartMode mode = StartModeFromArguments(arguments);
  std::optional<ServerLife> life;  // longer than the apartment, with which COM lets go of the last objects
  if (mode == StartMode::Component) life.emplace(kPatienceMs, kLateMs);
  const ComApartment apartment;  // assistive programs reach the windows through it, environments the add-in
  const OleThread dragging;      // what is dragged out of toolbars and onto them
  InitCommonControls();
  Application application;
  if (mode == StartMode::Register || mode == StartMode::Unregister)
    return application.ChangeRegistration(mode, IsSilent(arguments));
  return life ? application.Serve(*life) : application.Run(mode);
}
