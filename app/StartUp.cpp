#include "app/StartUp.h"

#include <windows.h>

namespace snip {
namespace {

// Where the first-run marker is kept; any text that is not blank counts as "has run before".
constexpr const char* kCompany = "Brennic";
constexpr const char* kApplication = "BnSnipstore";
constexpr const char* kSection = "2.0";
constexpr const char* kRunBefore = "RunBefore";

}  // namespace

void StartUp(StartMode mode, const Registry32& registry, const ShowMessageFunction& showMessage,
             const std::function<void()>& showMainWindow) {
  if (mode == StartMode::Component) return;
  const bool firstRun = registry.GetRegSetting(kCompany, kApplication, kSection, kRunBefore).empty();
  if (!firstRun) {
    showMainWindow();
    return;
  }
  RegisterAddIn();
  showMessage(
      "Brennic Snipstore 2.0 was added to VB's list of add-ins. Run the executable again to start Snipstore "
      "outside the VB IDE.",
      MessageStyle::kOk, "Brennic Snipstore 2.0");
  registry.SaveRegSetting(kCompany, kApplication, kSection, kRunBefore, "Yes");
}

void RegisterAddIn() {
  WritePrivateProfileStringA("Add-Ins32", "BnSnipstore2.Connect", "0", "vbaddin.ini");
}

}  // namespace snip
