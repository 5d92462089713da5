#include "tests/app/Program.h"

#include <psapi.h>
#include <shlwapi.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "app/AddInLists.h"
#include "app/ComRegistration.h"
#include "platform/Win32Text.h"
#include "tests/support/TestRegistry.h"

namespace snip::test {
namespace {

constexpr const char* kCompanyKey = "Software\\Brennic";
constexpr const char* kMarkerKey = "Software\\Brennic\\BnSnipstore\\2.0";
constexpr const char* kServerKey = "CLSID\\{25E7D835-FA5D-4BBE-9850-7E945446795C}\\LocalServer32";
constexpr DWORD kEndMs = 15000;

void Forget() {
  UnregisterServer(RegistrationRoots(), Copies::All);
  SHDeleteKeyA(HKEY_CURRENT_USER, kCompanyKey);
  UnregisterAddIn();
}

/// Built beside the tests, or named by the caller when another build is to be driven.
std::string ExecutablePath() {
  const char* named = std::getenv("SNIPSTORE_EXE");
  return named != nullptr ? named : ProgramDirectory() + "\\..\\BnSnipstore2.exe";
}

/// For systems where GetProcessHandleCount answers 0, as Wine's does: counts among all handles there are.
DWORD HandlesOf(DWORD process) {
  struct Entry {
    ULONG process;
    BYTE type;
    BYTE flags;
    USHORT handle;
    void* object;
    ULONG access;
  };
  constexpr int systemHandles = 16;
  constexpr ULONG room = ULONG{1} << 22U;
  using Query = LONG(WINAPI*)(int, void*, ULONG, ULONG*);
  const auto query = reinterpret_cast<Query>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll"), "NtQuerySystemInformation")));
  std::vector<char> buffer(room);
  ULONG size = 0;
  if (query == nullptr || query(systemHandles, buffer.data(), room, &size) != 0) return 0;
  ULONG count = 0;
  std::memcpy(&count, buffer.data(), sizeof count);
  DWORD own = 0;
  for (ULONG i = 0; i < count; ++i) {
    Entry entry{};
    std::memcpy(&entry, buffer.data() + alignof(Entry) + i * sizeof entry, sizeof entry);
    if (entry.process == process) ++own;
  }
  return own;
}

}  // namespace

ProcessUse UseOf(DWORD id) {
  const UniqueFile process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, id));
  ProcessUse use;
  PROCESS_MEMORY_COUNTERS_EX memory{};
  memory.cb = sizeof memory;
  GetProcessMemoryInfo(process.get(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory), sizeof memory);
  GetProcessHandleCount(process.get(), &use.handles);
  if (use.handles == 0) use.handles = HandlesOf(id);
  use.gdiObjects = GetGuiResources(process.get(), GR_GDIOBJECTS);
  use.userObjects = GetGuiResources(process.get(), GR_USEROBJECTS);
  use.workingSet = memory.WorkingSetSize;
  use.privateBytes = memory.PagefileUsage;
  return use;
}

Program::Program() {
  Forget();
  if (CopyFileA(ExecutablePath().c_str(), folder_.File("BnSnipstore2.exe").c_str(), TRUE) == 0) {
    throw std::runtime_error("no executable at " + ExecutablePath());
  }
  folder_.Write("portable.txt", "");  // its histories go with the folder
}

Program::~Program() {
  Kill();
  Forget();
}

void Program::MarkAsRunBefore(const std::string& marker) const {
  SHSetValueA(HKEY_CURRENT_USER, kMarkerKey, "RunBefore", REG_SZ, marker.c_str(),
              static_cast<DWORD>(marker.size() + 1));
}

std::string Program::Marker() {
  return RegistryText(HKEY_CURRENT_USER, kMarkerKey, "RunBefore");
}

std::string Program::AddInEntry() {
  char text[100]{};
  GetPrivateProfileStringA("Add-Ins32", "BnSnipstore2.Connect", "", text, sizeof text, "vbaddin.ini");
  return text;
}

std::string Program::ServerCommand() {
  return RegistryText(HKEY_CLASSES_ROOT, kServerKey);
}

void Program::SetServerCommand(const std::string& command) {
  SHSetValueA(HKEY_CLASSES_ROOT, kServerKey, nullptr, REG_SZ, command.c_str(),
              static_cast<DWORD>(command.size() + 1));
}

std::string Program::ListEntry(const std::string& key) {
  const std::string name = RegistryText(HKEY_CURRENT_USER, key, "FriendlyName");
  DWORD load = 0;
  DWORD size = sizeof load;
  SHGetValueA(HKEY_CURRENT_USER, key.c_str(), "LoadBehavior", nullptr, &load, &size);
  return name.empty() ? "" : name + " " + std::to_string(load);
}

bool Program::HasRegistryKey() {
  HKEY key = nullptr;
  const bool found = RegOpenKeyExA(HKEY_CURRENT_USER, kCompanyKey, 0, KEY_READ, &key) == ERROR_SUCCESS;
  const UniqueRegKey owner(key);
  return found;
}

UniqueFile Program::StartAnother(const std::string& arguments) {
  STARTUPINFOA start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  std::string commandLine = "\"" + folder_.File("BnSnipstore2.exe") + "\" " + arguments;
  if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                     &process) == 0) {
    throw std::runtime_error("the program does not start: error " + std::to_string(GetLastError()));
  }
  CloseHandle(process.hThread);
  thread_ = process.dwThreadId;
  return UniqueFile(process.hProcess);
}

bool Program::WaitForEnd() {
  return WaitForSingleObject(process_.get(), kEndMs) == WAIT_OBJECT_0;
}

bool Program::WaitUntilIdle() const {
  return WaitForInputIdle(process_.get(), kEndMs) == 0 && Running();
}

DWORD Program::ExitCode() const {
  DWORD code = STILL_ACTIVE;
  GetExitCodeProcess(process_.get(), &code);
  return code;
}

bool Program::Running() const {
  return process_ && WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT;
}

void Program::Kill() {
  if (!Running()) return;
  TerminateProcess(process_.get(), 1);
  WaitForSingleObject(process_.get(), kEndMs);
}

void Program::Quit() const {
  PostThreadMessageA(thread_, WM_QUIT, 0, 0);
}

HWND Program::MainWindow() const {
  return WaitForWindow("Brennic Snipstore 2.x");
}

}  // namespace snip::test
