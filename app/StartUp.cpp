#include "app/StartUp.h"

#include <windows.h>

#include "app/AddInIdentity.h"
#include "app/Rights.h"

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

bool HasEntry(const char* file) {
  char text[2]{};
  return GetPrivateProfileStringA(kAddInList, kAddInProgId, "", text, sizeof text, file) != 0;
}

/// Where the system keeps the user's own copy of the list.
std::string VirtualAddInFile() {
  char local[MAX_PATH]{};
  char windows[MAX_PATH]{};
  GetEnvironmentVariableA("LOCALAPPDATA", local, sizeof local);
  if (GetWindowsDirectoryA(windows, sizeof windows) < 2) return {};
  const char* const behindTheDrive = windows + 2;
  return std::string(local) + "\\VirtualStore" + behindTheDrive + "\\" + kAddInFile;
}

}  // namespace

void StartUp(StartMode mode, const Registry32& registry, const ShowMessageFunction& showMessage,
             const Registration& registration, const std::function<void()>& showMainWindow) {
  if (mode != StartMode::Standalone) return;
  const bool firstRun = registry.GetRegSetting(kCompany, kApplication, kSection, kRunBefore).empty();
  if (!firstRun) {
    registration.enterWhereMoved();
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

void RegisterAddIn() {
  WritePrivateProfileStringA(kAddInList, kAddInProgId, "0", kAddInFile);
}

bool AddInRegistered() {
  return HasEntry(kAddInFile);
}

Entered WhereAddInIsRegistered() {
  WritePrivateProfileStringA(nullptr, nullptr, nullptr, kAddInFile);  // has what was written reach the disk
  if (WritesAreVirtual() && HasEntry(VirtualAddInFile().c_str())) return Entered::User;
  return HasEntry(kAddInFile) ? Entered::All : Entered::Nowhere;
}

bool UnregisterAddIn() {
  WritePrivateProfileStringA(kAddInList, kAddInProgId, nullptr, kAddInFile);
  return !AddInRegistered();
}

}  // namespace snip
