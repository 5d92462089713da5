#include <boost/nowide/args.hpp>

#include <exception>

#include "cli/commands/CommandLine.h"
#include "cli/system/Failure.h"

int main(int count, char** values) {
  snip::Terminal terminal;
  snip::ExitCode code = snip::ExitCode::File;
  try {
    const boost::nowide::args utf8(count, values);  // on Windows, where main gets ANSI text
    code = snip::RunCommandLine({values + (count > 0 ? 1 : 0), values + count}, terminal,
                                snip::CodePage::System());
  } catch (const snip::Failure& failure) {
    terminal.Complain(failure.what());
    code = failure.code();
  } catch (const std::exception& error) {
    // Thrown by file system functions, or for lack of memory.
    terminal.Complain(error.what());
  }
  return static_cast<int>(code);
}
