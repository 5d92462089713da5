#ifdef _WIN32
#include <windows.h>

#include <shellapi.h>
#endif

#include <exception>
#include <string>
#include <vector>

#include "cli/CommandLine.h"
#include "cli/Failure.h"

namespace {

#ifdef _WIN32
std::string ToUtf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
  utf8.pop_back();  // the zero at its end
  return utf8;
}

/// The arguments as they were given: those of main() have been through a code page.
std::vector<std::string> Arguments(int /*count*/, char** /*values*/) {
  int count = 0;
  std::vector<std::string> arguments;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 1; i < count; ++i) arguments.push_back(ToUtf8(words[i]));
  LocalFree(words);
  return arguments;
}
#else
std::vector<std::string> Arguments(int count, char** values) {
  return {values + (count > 0 ? 1 : 0), values + count};
}
#endif

}  // namespace

int main(int count, char** values) {
  snip::Terminal terminal;
  snip::ExitCode code = snip::ExitCode::File;
  try {
    code = snip::RunCommandLine(Arguments(count, values), terminal, snip::CodePage::System());
  } catch (const snip::Failure& failure) {
    terminal.Complain(failure.what());
    code = failure.code();
  } catch (const std::exception& error) {
    // The file system's functions and memory that runs out.
    terminal.Complain(error.what());
  }
  return static_cast<int>(code);
}
