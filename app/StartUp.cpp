#include "app/StartUp.h"

#include <windows.h>

#include "app/AddInIdentity.h"

namespace snip {
namespace {

// Where the first-run marker is kept; any text that is not blank counts as "has run before".
constexpr const char* kCompany = "Brennic";
constexpr const char* kApplication = "BnSnipstore";
constexpr const char* kSection = "2.0";
constexpr const char* kRunBefore = "RunBefore";

// The development environment's list of add-ins, which lies in the Windows directory.
constexpr const char* kAddInFile = "vbaddin.ini";
constexpr const char* kAddInList = "Add-Ins32";

}  // namespace

void StartUp(StartMode mode, const Registry32& registry, const ShowMessageFunction& showMessage,
             const std::function<bool()>& registerServer, const std::function<void()>& showMainWindow) {
  if (mode != StartMode::Standalone) return;
  const bool firstRun = registry.GetRegSetting(kCompany, kApplication, kSection, kRunBefore).empty();
  if (!firstRun) {
    showMainWindow();
    return;
  }
  RegisterAddIn();
  const bool registered = registerServer();
  showMessage(
      SNIPSTORE_NAME
      " was added to VB's list of add-ins. Run the executable again to start Snipstore outside the VB IDE.",
      MessageStyle::kOk, kAddInName);
  if (!registered) {
    showMessage(
        "The program could not be registered, so that the VB IDE cannot load it. "
        "Run it with /regserver to try again.",
        MessageStyle::kOk, kAddInName);
  }
  registry.SaveRegSetting(kCompany, kApplication, kSection, kRunBefore, "Yes");
}

void RegisterAddIn() {
  WritePrivateProfileStringA(kAddInList, kAddInProgId, "0", kAddInFile);
}

bool AddInRegistered() {
  char text[2]{};
  return GetPrivateProfileStringA(kAddInList, kAddInProgId, "", text, sizeof text, kAddInFile) != 0;
}

void UnregisterAddIn() {
  WritePrivateProfileStringA(kAddInList, kAddInProgId, nullptr, kAddInFile);
}

}  // namespace snip
