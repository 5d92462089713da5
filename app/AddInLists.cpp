#include "app/AddInLists.h"

#include <windows.h>

#include <string>

#include "app/AddInIdentity.h"
#include "app/ComRegistration.h"
#include "app/Rights.h"
#include "platform/Handle.h"

namespace snip {
namespace {

constexpr const char* kAddInFile = "vbaddin.ini";
constexpr const char* kAddInList = "Add-Ins32";

// Visual Basic 6's list, with a key for each add-in by the name of its class, as VBA's have.
constexpr const char* kAddInKeys = R"(Software\Microsoft\Visual Basic\6.0\Addins)";
/// Above all of the lists, and not theirs alone.
constexpr const char* kSharedKey = R"(Software\Microsoft)";

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

std::string Key(const char* list, const char* progId) {
  return std::string(list) + "\\" + progId;
}

void SetText(HKEY key, const char* name, const std::string& text) {
  RegSetValueExA(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                 static_cast<DWORD>(text.size() + 1));
}

void SetNumber(HKEY key, const char* name, DWORD number) {
  RegSetValueExA(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number);
}

/// Lists an add-in without having it loaded. An entry that is there stays as its user has set it. False when
/// it could not be written.
bool EnterKey(const char* list, const char* progId) {
  HKEY opened = nullptr;
  DWORD disposition = 0;
  if (RegCreateKeyExA(HKEY_CURRENT_USER, Key(list, progId).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                      KEY_WRITE, nullptr, &opened, &disposition) != ERROR_SUCCESS) {
    return false;
  }
  const UniqueRegKey key(opened);
  if (disposition != REG_CREATED_NEW_KEY) return true;
  SetText(opened, "FriendlyName", kAddInName);
  SetText(opened, "Description", "Keeps code snippets in libraries and puts them into modules.");
  SetNumber(opened, "LoadBehavior", 0);     // loaded by its user alone
  SetNumber(opened, "CommandLineSafe", 0);  // it has windows
  return true;
}

/// With the keys above it that hold nothing else: a user without the environment has none of them. False when
/// it is still there.
bool DeleteKey(const char* list, const char* progId) {
  const LONG deleted = RegDeleteKeyA(HKEY_CURRENT_USER, Key(list, progId).c_str());
  for (std::string above = list; above != kSharedKey && DeleteKeyIfEmpty(HKEY_CURRENT_USER, above);)
    above.resize(above.rfind('\\'));
  return deleted == ERROR_SUCCESS || deleted == ERROR_FILE_NOT_FOUND;
}

/// False when the library is still listed or registered.
bool TakeAway(const VbaLibrary& library) {
  const bool listGone = DeleteKey(library.list, library.progId);
  return UnregisterLibrary(library) && listGone;
}

}  // namespace

void RegisterAddIn() {
  WritePrivateProfileStringA(kAddInList, kAddInProgId, "0", kAddInFile);
}

bool RegisterInKeys() {
  bool written = EnterKey(kAddInKeys, kAddInProgId);
  for (const VbaLibrary& library : kVbaLibraries) {
    if (!LibraryPath(library).empty()) written = EnterKey(library.list, library.progId) && written;
  }
  return RegisterLibraries() && written;
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
  bool gone = DeleteKey(kAddInKeys, kAddInProgId) && !AddInRegistered();
  for (const VbaLibrary& library : kVbaLibraries) gone = TakeAway(library) && gone;
  return gone;
}

bool UnregisterOwnLibraries() {
  bool gone = true;
  for (const VbaLibrary& library : kVbaLibraries)
    gone = (!LibraryIsOwn(library) || TakeAway(library)) && gone;
  return gone;
}

}  // namespace snip
