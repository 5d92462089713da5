#include "tests/windows/AccessibleClientProgram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "platform/Handle.h"
#include "platform/Win32Text.h"
#include "tests/support/TestDesktop.h"

namespace snip::test {

ProgramResult RunClientProgram(HWND window, const std::string& name) {
  const TemporaryFolder folder;
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  UniqueFile output(CreateFileA(folder.File("out.txt").c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  STARTUPINFOA start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = output.get();
  start.hStdError = output.get();
  char handle[32]{};
  std::snprintf(handle, sizeof handle, "%llx",
                static_cast<unsigned long long>(reinterpret_cast<UINT_PTR>(window)));
  std::string commandLine = "\"" + ProgramDirectory() + "\\accessible_client.exe\" " + handle;
  if (!name.empty()) commandLine += " \"" + name + "\"";
  PROCESS_INFORMATION information{};
  ProgramResult result;
  if (CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                     &information) == 0) {
    ADD_FAILURE() << "the client program does not start: " << commandLine;
    return result;
  }
  CloseHandle(information.hThread);
  const UniqueFile process(information.hProcess);
  if (!WaitUntil([&] { return WaitForSingleObject(process.get(), 0) == WAIT_OBJECT_0; }, 30000)) {
    TerminateProcess(process.get(), 1);
    ADD_FAILURE() << "the client program hangs";
  }
  GetExitCodeProcess(process.get(), &result.exitCode);
  output.Reset();
  result.output = folder.Read("out.txt");
  result.output.erase(std::remove(result.output.begin(), result.output.end(), '\r'), result.output.end());
  return result;
}

}  // namespace snip::test
