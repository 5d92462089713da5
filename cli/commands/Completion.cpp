#include <CLI/CLI.hpp>

#include "cli/commands/Commands.h"

namespace snip {
namespace {

/// Uses a table of what can follow: for "COMMAND" its options, for "COMMAND OPTION" the option's value, for
/// "COMMAND 0" and so on the arguments without option, the last of which is "COMMAND +" if it can be
/// repeated.
constexpr std::string_view kScript = R"script(
_bns_words() { COMPREPLY+=($(compgen -W "$1" -- "$2")); }

# $1 without its quoting; nothing in it is executed.
_bns_unquoted() {
  local word=${1//[\\\"\']/}
  [[ $word != '~/'* ]] || word=$HOME/${word:2}
  printf '%s' "$word"
}

_bns_snippets() {
  local IFS=$'\n' name
  for name in $(bns list -- "$(_bns_unquoted "$1")" 2>/dev/null); do
    [[ $name != "$2"* ]] || COMPREPLY+=("$(printf '%q' "$name")")
  done
}

_bns_files() {
  local IFS=$'\n'
  compopt -o filenames 2>/dev/null
  COMPREPLY+=($(compgen -f -X "!*$1" -- "$2") $(compgen -d -- "$2"))
}

_bns() {
  local current=${COMP_WORDS[COMP_CWORD]} previous='' word command='' library='' count=0 i value
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    if [ -z "$command" ]; then
      command=$word
    elif [[ -n $previous && -n ${_bns_table[$command $previous]-} ]]; then
      word=''
    elif [[ $word != -?* ]]; then
      [ $count != 0 ] || library=$word
      count=$((count + 1))
    fi
    previous=$word
  done
  value=${_bns_table[$command $previous]-}
  if [ -z "$command" ]; then
    value=${_bns_table[bns]}
  elif [[ -z $value && $current == -* ]]; then
    value=${_bns_table[$command]-}
  elif [ -z "$value" ]; then
    value=${_bns_table[$command $count]-${_bns_table[$command +]-}}
  fi
  case $value in
    LIBRARY) _bns_files .bns "$current" ;;
    SNIPPET) _bns_snippets "$library" "$current" ;;
    FILE | PATH | SOURCE | OUTPUT) _bns_files '' "$current" ;;
    [A-Z]*) ;;
    *) _bns_words "${value//[|,]/ }" "$current" ;;
  esac
}

complete -F _bns bns
)script";

class Completion : public Command {
 public:
  Completion(CLI::App& app, Session& session)
      : Command(app, session, "completion", "print the completion script for a shell") {
    AddText("SHELL", shell_, "bash");
  }

  ExitCode Run() override {
    if (shell_ != "bash") throw Failure(ExitCode::Usage, shell_ + ": there is no completion for this shell");
    session_.terminal.WriteBytes("declare -A _bns_table=(\n");
    std::string names = "--help --version";
    for (const CLI::App* command : parser_.get_parent()->get_subcommands(nullptr)) {
      names += " " + command->get_name();
      PrintCommand(*command);
    }
    PrintEntry("bns", names);
    session_.terminal.WriteBytes(")\n");
    session_.terminal.WriteBytes(kScript);
    return ExitCode::Done;
  }

 private:
  void PrintCommand(const CLI::App& command) {
    std::string names;
    std::size_t arguments = 0;
    for (const CLI::Option* option : command.get_options()) {
      const std::string& text = option->get_option_text();
      if (option->get_positional()) {
        const bool repeated = option->get_items_expected_max() > 1;
        PrintEntry(command.get_name() + " " + (repeated ? "+" : std::to_string(arguments++)),
                   text.empty() ? option->get_name(true) : text);
      }
      for (const std::string& name : option->get_lnames()) {
        names += (names.empty() ? "--" : " --") + name;
        if (!text.empty()) PrintEntry(command.get_name() + " --" + name, text);
      }
      for (const std::string& name : option->get_snames()) {
        if (!text.empty()) PrintEntry(command.get_name() + " -" + name, text);
      }
    }
    PrintEntry(command.get_name(), names);
  }

  void PrintEntry(const std::string& key, const std::string& value) {
    session_.terminal.WriteBytes("  ['" + key + "']='" + value + "'\n");
  }

  std::string shell_;
};

}  // namespace

std::unique_ptr<Command> MakeCompletion(CLI::App& app, Session& session) {
  return std::make_unique<Completion>(app, session);
}

}  // namespace snip
