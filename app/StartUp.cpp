#include "app/StartUp.h"

#include "app/AddInIdentity.h"

namespace snip {
namespace {

// Where the first-run marker is kept; any text that is not blank counts as "has run before".
constexpr const char* kCompany = "Brennic";
constexpr const char* kApplication = "BnSnipstore";
constexpr const char* kSection = "2.0";
constexpr const char* kRunBefore = "RunBefore";

}  // namespace

void StartUp(StartMode mode, const Registry32& registry, const ShowMessageFunction& showMessage,
             const Registration& registration, const std::function<void()>& showMainWindow) {
  if (mode != StartMode::Standalone) return;
  const bool firstRun = registry.GetRegSetting(kCompany, kApplication, kSection, kRunBefore).empty();
  if (!firstRun) {
    registration.enterAgain();
    showMainWindow();
    return;
  }
  const std::string remarks = registration.enter();
  showMessage(
      SNIPSTORE_NAME
      " was added to VB's list of add-ins. Run the executable again to start Snipstore outside the VB IDE.",
      MessageStyle::kOk, kAddInName);
  if (!remarks.empty()) showMessage(remarks, MessageStyle::kOk, kAddInName);
  registry.SaveRegSetting(kCompany, kApplication, kSection, kRunBefore, "Yes");
}

}  // namespace snip
