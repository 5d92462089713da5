#include <CLI/CLI.hpp>

#include "cli/commands/Commands.h"

namespace snip {
namespace {

constexpr std::string_view kBeforeCommands = R"(.Dd November 22, 2026
.Dt BNS 1
.Os
.Sh NAME
.Nm bns
.Nd read, search and change Snipstore's code libraries
.Sh SYNOPSIS
.Nm
.Ar command
.Op Ar option ...
.Ar argument ...
.Sh DESCRIPTION
.Nm
works on the library files
.Pq Pa .bns
of Brennic Snipstore, and exchanges snippets with Visual Studio, VS Code and folders of
.Pa .bas
files.
.Pp
A library is the path of a library file, or
.Sq -
for the standard input.
A command that changes a library from the standard input writes it to the standard output.
.Pp
A snippet is chosen by its exact name, by its name in another case if only one snippet has that, or by
.Sq #
and its number in the library, from 1.
.Pp
Libraries are in the code page Windows-1252, on Windows in the system's ANSI code page.
All other text is UTF-8, unless an option says otherwise.
A file is written atomically: if that fails, the old file is unchanged.
Permissions are kept and symbolic links followed.
.Sh COMMANDS
.Bl -tag -width Ds
)";

constexpr std::string_view kAfterCommands = R"(.El
.Sh FILE FORMATS
.Bl -tag -width vscode
.It Cm vs
.Pa FILE.snippet ,
Visual Studio's XML.
HelpUrl is the attachment's path.
.It Cm vscode
.Pa FILE.code-snippets
or
.Pa FILE.json ,
VS Code's JSON.
.Pa FILE.attachments
in the same folder has the paths of attachments.
.It Cm bas
A folder with a
.Pa .bas
file for each snippet, with the description as comments above the code, in the library's code page.
.Pa snippets.json
in it has the order, the names and the attachments.
.El
.Sh ENVIRONMENT
.Bl -tag -width NO_COLOR
.It Ev NO_COLOR
If it is set and not empty, no colours are used on a terminal.
.El
.Sh EXIT STATUS
.Bd -literal
)";

constexpr std::string_view kExamples = R"(.Ed
.Sh EXAMPLES
Find a word in all libraries:
.Pp
.Dl bns search -iw instr *.bns
.Pp
Add the code of a module to a library:
.Pp
.Dl bns add Strings.bns \(dqTrim all\(dq -C TrimAll.bas -d \(dqTrims every line.\(dq
.Pp
Show what an import would do:
.Pp
.Dl bns import Strings.bns vb.code-snippets --dry-run
)";

class Manual : public Command {
 public:
  Manual(CLI::App& app, Session& session)
      : Command(app, session, "manual", "print the manual page, in the format of man pages") {}

  ExitCode Run() override {
    const CLI::App& app = *parser_.get_parent();
    Print(kBeforeCommands);
    for (const CLI::App* command : app.get_subcommands(nullptr)) PrintCommand(*command);
    Print(kAfterCommands);
    const std::string footer = app.get_footer();
    const auto codes = footer.find('\n') + 1;
    Print(footer.substr(codes, footer.find("\n\n") + 1 - codes));
    Print(kExamples);
    return ExitCode::Done;
  }

 private:
  void PrintCommand(const CLI::App& command) {
    Print(".It Cm " + command.get_name() + " Oo Ar option ... Oc");
    for (const CLI::Option* option : command.get_options()) {
      if (option->get_positional()) Print(" Ar " + option->get_name(true));
    }
    Print("\nTo " + command.get_description() + ".\n.Bl -tag -width Ds\n");
    for (const CLI::Option* option : command.get_options()) {
      std::string names;
      for (const std::string& name : option->get_snames()) names += " Fl " + name;
      for (const std::string& name : option->get_lnames()) {
        names += (names.empty() ? " Fl Fl " : " , Fl Fl ") + name;
      }
      if (option->get_positional()) names = " Ar " + option->get_name(true);
      const std::string& value = option->get_option_text();
      Print(".It" + names + (value.empty() ? "" : " Ar " + value) + "\n" + option->get_description() + "\n");
    }
    Print(".El\n");
  }

  void Print(std::string_view text) { session_.terminal.WriteBytes(text); }
};

}  // namespace

std::unique_ptr<Command> MakeManual(CLI::App& app, Session& session) {
  return std::make_unique<Manual>(app, session);
}

}  // namespace snip
