// The real program from outside: its start, beside that of the system's notepad, or the memory that its
// palette takes. Prints report lines for ./bench.
//   start_bench PROGRAM.EXE [find]

#include <windows.h>
#include <psapi.h>
#include <shlwapi.h>

#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include "benches/Comparison.h"
#include "benches/GeneratedLibrary.h"
#include "library/BnsFormat.h"
#include "platform/Handle.h"
#include "platform/Win32Text.h"
#include "tests/support/TestDesktop.h"
#include "ui/find/frmFind.h"
#include "ui/main/MainWindowCommands.h"

namespace snip::bench {
namespace {

constexpr int kRuns = 15;  ///< The medians of seven differed by 10 %.
constexpr Limit kTimeLimit{1.2, "notepad is the smallest useful window"};
constexpr int kLimitedSize = 10000;  ///< The limit is for a library of that many snippets.
constexpr double kOwnMb = 8;         ///< Beside notepad and the file.
constexpr double kMb = 1 << 20;
constexpr DWORD kPatienceMs = 60000;

constexpr int kPaletteSnippets = 10000;
constexpr std::size_t kPaletteLibraries = 4;
constexpr double kPaletteTakes = 1.3;  ///< Of the files that it searches.
constexpr double kPaletteKeeps = 0.1;
constexpr double kPaletteMemoryMs = 60000;

[[noreturn]] void Fail(const std::string& what) {
  std::fprintf(stderr, "start_bench: %s\n", what.c_str());
  std::exit(1);
}

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

/// A program that has been started, and is idle.
class Program {
 public:
  Program(const std::string& program, const std::string& argument) : name_(program) {
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION created{};
    std::string commandLine = "\"" + program + "\" " + argument;
    const double start = Now();
    if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &created) == 0) {
      Fail(program + " does not start");
    }
    const UniqueFile thread(created.hThread);
    process_.Reset(created.hProcess);
    while ((window_ = VisibleWindowOf(created.dwProcessId)) == nullptr) {
      if (Now() - start > kPatienceMs) Fail(program + " shows no window");
      Sleep(1);
    }
    // Idle: it has nothing left to paint or to answer, and waits.
    if (WaitForInputIdle(process_.get(), kPatienceMs) != 0) Fail(program + " is never idle");
    DWORD_PTR answer = 0;
    SendMessageTimeoutA(window_, WM_NULL, 0, 0, SMTO_NORMAL, kPatienceMs, &answer);
    startMs_ = Now() - start;
  }

  HWND window() const { return window_; }
  double startMs() const { return startMs_; }  ///< Until its window was visible and waited for input.
  PROCESS_MEMORY_COUNTERS Memory() const {
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(process_.get(), &memory, sizeof memory);
    return memory;
  }
  double WorkingSetMb() const { return static_cast<double>(Memory().WorkingSetSize) / kMb; }
  double PrivateMb() const { return static_cast<double>(Memory().PagefileUsage) / kMb; }

  void Close() const {
    PostMessageA(window_, WM_CLOSE, 0, 0);
    if (WaitForSingleObject(process_.get(), kPatienceMs) != WAIT_OBJECT_0) Fail(name_ + " does not end");
  }

 private:
  std::string name_;
  UniqueFile process_;
  HWND window_ = nullptr;
  double startMs_ = 0;
};

/// A start is a first one unless the registry says otherwise.
void MarkAsRunBefore() {
  SHSetValueA(HKEY_CURRENT_USER, "Software\\Brennic\\BnSnipstore\\2.0", "RunBefore", REG_SZ, "Yes", 4);
}

/// The program's copy in the folder of the libraries that it opens.
std::string CopyTo(const test::TemporaryFolder& folder, const std::string& executable) {
  const std::string program = folder.File("BnSnipstore2.exe");
  if (CopyFileA(executable.c_str(), program.c_str(), TRUE) == 0) Fail("no executable at " + executable);
  return program;
}

void Measure(const std::string& executable, int count) {
  const test::TemporaryFolder folder;
  const std::string bytes = WriteBns(GeneratedSnippets(count));
  folder.Write("Bench.bns", bytes);
  folder.Write("empty.txt", "");
  const std::string program = CopyTo(folder, executable);

  std::vector<double> memory;
  std::vector<double> notepadMemory;
  const auto start = [](const std::string& what, const std::string& argument, std::vector<double>& sizes) {
    const Program started(what, argument);
    sizes.push_back(started.WorkingSetMb());
    started.Close();
    return started.startMs();
  };
  const Comparison starting = Compare(
      kRuns, [&] { return start(program, "", memory); },
      [&] { return start("notepad.exe", "\"" + folder.File("empty.txt") + "\"", notepadMemory); });
  const std::string suffix = ", " + std::to_string(count) + " snippets";
  const bool limited = count == kLimitedSize;
  PrintRatio("start to a visible, idle window" + suffix, starting,
             limited ? std::optional(kTimeLimit) : std::nullopt);
  PrintValue("working set then" + suffix, Median(memory),
             Limit{Median(notepadMemory) + static_cast<double>(bytes.size()) / kMb + kOwnMb,
                   "the file is held once, the window takes what notepad does"},
             "MB");
  PrintValue("notepad's working set", Median(notepadMemory), {}, "MB");
}

/// The memory that the palette takes for the libraries that it searches, and what it keeps of it.
void MeasurePalette(const std::string& executable) {
  const test::TemporaryFolder folder;
  const auto all = GeneratedSnippets(kPaletteSnippets);
  constexpr std::size_t share = kPaletteSnippets / kPaletteLibraries;
  double filesMb = 0;
  for (std::size_t library = 0; library < kPaletteLibraries; ++library) {
    const std::string bytes = WriteBns(std::span(all).subspan(library * share, share));
    folder.Write("Bench" + std::to_string(library) + ".bns", bytes);
    filesMb += static_cast<double>(bytes.size()) / kMb;
  }
  const Program program(CopyTo(folder, executable), "");
  const double before = program.PrivateMb();
  SendMessageA(program.window(), WM_COMMAND, Command::kFind, 0);
  const HWND palette = test::FindVisibleWindow("Find Snippets");
  const HWND status = GetDlgItem(palette, frmFind::kStatusId);
  if (!test::WaitUntil([&] {
        const std::string text = WindowText(status);
        return text.starts_with(std::to_string(kPaletteSnippets)) &&
               text.find("reading") == std::string::npos;
      }))
    Fail("the palette does not read its libraries: " + WindowText(status));
  const double open = program.PrivateMb() - before;
  SendMessageA(palette, WM_CLOSE, 0, 0);
  double closed = open;
  for (const double end = Now() + kPaletteMemoryMs; Now() < end && closed > kPaletteKeeps * filesMb;) {
    Sleep(100);
    closed = program.PrivateMb() - before;
  }
  program.Close();
  const std::string suffix = ", " + std::to_string(kPaletteSnippets) + " snippets in four libraries";
  PrintValue("memory that the palette takes" + suffix, open,
             Limit{kPaletteTakes * filesMb, "each file is held once"}, "MB");
  PrintValue("the same within a minute after closing it", closed,
             Limit{kPaletteKeeps * filesMb, "what is not used is given back"}, "MB");
}

}  // namespace
}  // namespace snip::bench

int main(int count, char** arguments) {
  const bool palette = count == 3 && std::string_view(arguments[2]) == "find";
  if (count != 2 && !palette) {
    std::fputs("usage: start_bench PROGRAM.EXE [find]\n", stderr);
    return 2;
  }
  snip::bench::MarkAsRunBefore();
  if (palette) {
    snip::bench::MeasurePalette(arguments[1]);
    return 0;
  }
  for (const int size : snip::bench::kLibrarySizes) snip::bench::Measure(arguments[1], size);
  return 0;
}
