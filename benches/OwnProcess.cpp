#include "benches/OwnProcess.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "platform/Handle.h"

namespace snip::bench {

void Fail(const char* what) {
  std::fprintf(stderr, "window_bench: %s\n", what);
  std::exit(1);
}

double MeasuredInOwnProcess(const std::string& group) {
  std::string commandLine(MAX_PATH, '\0');
  commandLine.resize(GetModuleFileNameA(nullptr, commandLine.data(), MAX_PATH));
  commandLine = '"' + commandLine + "\" " + group;
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION created{};
  if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                     &created) == 0) {
    Fail("cannot start itself");
  }
  const UniqueFile thread(created.hThread);
  const UniqueFile process(created.hProcess);
  WaitForSingleObject(process.get(), INFINITE);
  DWORD microseconds = 0;
  GetExitCodeProcess(process.get(), &microseconds);
  if (microseconds < 1000) Fail("a measurement failed");
  return microseconds / 1000.0;
}

int Microseconds(double milliseconds) {
  return static_cast<int>(milliseconds * 1000);
}

}  // namespace snip::bench
