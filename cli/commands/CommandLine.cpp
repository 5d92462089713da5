#include "cli/commands/CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>
#include <utility>

#include "cli/commands/Commands.h"
#include "version.h"

namespace snip {
namespace {

constexpr const char* kFooter =
    "Exit codes:\n"
    "  0  done\n"
    "  1  nothing found, problems found, some snippets skipped, a difference, or a conflict\n"
    "  2  usage error\n"
    "  3  a file could not be read or written\n"
    "  4  a file does not have the expected format\n"
    "  5  refused, because data would be lost or overwritten; nothing was written\n"
    "\n"
    "\"bns COMMAND --help\" shows the options of a command, \"bns manual\" those of all.";

}  // namespace

ExitCode RunCommandLine(std::vector<std::string> arguments, Terminal& terminal, const CodePage& page) {
  CLI::App app("Reads, searches and changes Snipstore's libraries, and exchanges snippets with other tools.",
               "bns");
  app.allow_windows_style_options(false);
  app.require_subcommand(1);
  app.set_version_flag("--version", std::string("bns ") + SNIPSTORE_VERSION_TEXT);
  app.footer(kFooter);
  Session session(terminal, page);
  std::vector<std::unique_ptr<Command>> commands;
  for (MakeCommand* const make : kCommands) commands.push_back(make(app, session));

  ExitCode code = ExitCode::Done;
  try {
    std::reverse(arguments.begin(), arguments.end());  // the parser takes the last one first
    app.parse(std::move(arguments));
    const auto all = app.get_subcommands([](const CLI::App* /*each*/) { return true; });
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (all[i]->parsed()) code = commands[i]->Run();
    }
  } catch (const CLI::ParseError& error) {
    std::ostringstream output;
    std::ostringstream complaint;
    const bool wrong = app.exit(error, output, complaint) != 0;
    terminal.Write(output.str());
    std::string message = complaint.str();
    if (message.ends_with('\n')) message.pop_back();
    if (wrong) terminal.Complain(message);
    code = wrong ? ExitCode::Usage : ExitCode::Done;
  } catch (const std::exception&) {
    terminal.Flush();  // so that results appear before the error
    throw;
  }
  terminal.Flush();
  return code;
}

}  // namespace snip
