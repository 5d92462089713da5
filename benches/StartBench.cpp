// The real program's start, beside that of the system's notepad. Prints report lines for ./bench.
//   start_bench PROGRAM.EXE

#include <windows.h>
#include <psapi.h>
#include <shlwapi.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "benches/Comparison.h"
#include "benches/GeneratedLibrary.h"
#include "library/BnsFormat.h"
#include "platform/Handle.h"
#include "tests/support/TestDesktop.h"

namespace snip::bench {
namespace {

constexpr int kRuns = 7;
constexpr double kTimeLimit = 1.2;
constexpr int kLimitedSize = 10000;  ///< The limit is for a library of that many snippets.
constexpr double kFilesInMemory = 2;
constexpr double kMb = 1 << 20;
constexpr DWORD kPatienceMs = 60000;

[[noreturn]] void Fail(const std::string& what) {
  std::fprintf(stderr, "start_bench: %s\n", what.c_str());
  std::exit(1);
}

/// One start of a program, and its end.
struct Start {
  double milliseconds = 0;  ///< Until its window is visible and waits for input.
  double memoryMb = 0;      ///< Working set, then.
};

struct ProcessWindow {
  DWORD process;
  HWND found;
};

BOOL CALLBACK CompareProcess(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<ProcessWindow*>(parameter);
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != search.process || IsWindowVisible(window) == 0) return TRUE;
  search.found = window;
  return FALSE;
}

HWND VisibleWindowOf(DWORD process) {
  ProcessWindow search{process, nullptr};
  EnumWindows(&CompareProcess, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

Start StartOnce(const std::string& program, const std::string& argument) {
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION created{};
  std::string commandLine = "\"" + program + "\" " + argument;
  Start result;
  const double start = Now();
  if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                     &created) == 0) {
    Fail(program + " does not start");
  }
  const UniqueFile thread(created.hThread);
  const UniqueFile process(created.hProcess);
  HWND window = nullptr;
  while ((window = VisibleWindowOf(created.dwProcessId)) == nullptr) {
    if (Now() - start > kPatienceMs) Fail(program + " shows no window");
    Sleep(1);
  }
  // Idle: it has nothing left to paint or to answer, and waits.
  if (WaitForInputIdle(process.get(), kPatienceMs) != 0) Fail(program + " is never idle");
  DWORD_PTR answer = 0;
  SendMessageTimeoutA(window, WM_NULL, 0, 0, SMTO_NORMAL, kPatienceMs, &answer);
  result.milliseconds = Now() - start;

  PROCESS_MEMORY_COUNTERS memory{};
  GetProcessMemoryInfo(process.get(), &memory, sizeof memory);
  result.memoryMb = static_cast<double>(memory.WorkingSetSize) / kMb;
  PostMessageA(window, WM_CLOSE, 0, 0);
  if (WaitForSingleObject(process.get(), kPatienceMs) != WAIT_OBJECT_0) Fail(program + " does not end");
  return result;
}

/// A start is a first one unless the registry says otherwise.
void MarkAsRunBefore() {
  SHSetValueA(HKEY_CURRENT_USER, "Software\\Brennic\\BnSnipstore\\2.0", "RunBefore", REG_SZ, "Yes", 4);
}

void Measure(const std::string& executable, int count) {
  const test::TemporaryFolder folder;
  const std::string bytes = WriteBns(GeneratedSnippets(count));
  folder.Write("Bench.bns", bytes);
  folder.Write("empty.txt", "");
  const std::string program = folder.File("BnSnipstore2.exe");
  if (CopyFileA(executable.c_str(), program.c_str(), TRUE) == 0) Fail("no executable at " + executable);

  std::vector<double> memory;
  std::vector<double> notepadMemory;
  const auto start = [](const std::string& what, const std::string& argument, std::vector<double>& sizes) {
    const Start once = StartOnce(what, argument);
    sizes.push_back(once.memoryMb);
    return once.milliseconds;
  };
  const Comparison starting = Compare(
      kRuns, [&] { return start(program, "", memory); },
      [&] { return start("notepad.exe", "\"" + folder.File("empty.txt") + "\"", notepadMemory); });
  const std::string suffix = ", " + std::to_string(count) + " snippets";
  const bool limited = count == kLimitedSize;
  PrintRatio("start to a visible, idle window" + suffix, starting, limited ? kTimeLimit : -1);
  PrintValue("working set then" + suffix, Median(memory),
             !limited ? -1 : Median(notepadMemory) + kFilesInMemory * static_cast<double>(bytes.size()) / kMb,
             "MB");
  PrintValue("notepad's working set", Median(notepadMemory), -1, "MB");
}

}  // namespace
}  // namespace snip::bench

int main(int count, char** arguments) {
  if (count != 2) {
    std::fputs("usage: start_bench PROGRAM.EXE\n", stderr);
    return 2;
  }
  snip::bench::MarkAsRunBefore();
  for (const int size : snip::bench::kLibrarySizes) snip::bench::Measure(arguments[1], size);
  return 0;
}
