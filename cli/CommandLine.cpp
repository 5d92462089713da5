#include "cli/CommandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>
#include <memory>
#include <sstream>
#include <utility>

#include "cli/commands/Commands.h"
#include "version.h"

namespace snip {
namespace {

constexpr const char* kLibraryHelp = "the library's file, or - for the standard input and output";
constexpr const char* kSnippetHelp = "the snippet's name, or # and its number";

constexpr const char* kFooter =
    "Exit codes:\n"
    "  0  done\n"
    "  1  no: nothing found, faults found, or something was left out\n"
    "  2  the command line makes no sense\n"
    "  3  a file could not be read or written\n"
    "  4  a file is not of the format it should be of\n"
    "  5  refused, nothing written: something would be lost or overwritten\n"
    "\n"
    "\"bns COMMAND --help\" tells about a command, \"man bns\" about all.";

/// The parser with one function for each command.
class Syntax {
 public:
  explicit Syntax(Session& session) : session_(session) {
    app_.allow_windows_style_options(false);
    app_.require_subcommand(1);
    app_.set_version_flag("--version", std::string("bns ") + SNIPSTORE_VERSION_TEXT);
    app_.footer(kFooter);
    AddReading();
    AddChanging();
    AddExchange();
  }

  CLI::App& app() { return app_; }
  ExitCode exitCode() const { return exitCode_; }

 private:
  /// A command whose options are of the type that its function takes.
  template <class Options>
  CLI::App* Command(const char* name, const char* help, const std::shared_ptr<Options>& options,
                    ExitCode (*run)(Session&, const Options&)) {
    CLI::App* const command = app_.add_subcommand(name, help);
    command->footer("");  // what the program's own help says of all commands
    command->callback([this, options, run] { exitCode_ = run(session_, *options); });
    return command;
  }

  void AddJson(CLI::App* command) {
    command->add_flag("--json", session_.json, "answer in JSON, for scripts");
  }
  void AddLossy(CLI::App* command,
                const char* help = "allow characters to be lost that libraries do not have") {
    command->add_flag("--lossy", session_.lossy, help);
  }
  static void AddLibrary(CLI::App* command, std::string& library) {
    command->add_option("LIBRARY", library, kLibraryHelp)->required();
  }
  static void AddLibraries(CLI::App* command, std::vector<std::string>& libraries) {
    command->add_option("LIBRARY", libraries, "the libraries' files, or - for the standard input")
        ->required();
  }
  static void AddSnippet(CLI::App* command, std::string& snippet) {
    command->add_option("SNIPPET", snippet, kSnippetHelp)->required();
  }
  static void AddFormat(CLI::App* command, Format& format) {
    const std::map<std::string, Format> words = {
        {"vs", Format::VisualStudio}, {"vscode", Format::VsCode}, {"bas", Format::Bas}};
    AddWord(command, "--format", format, words, "the other tool's format, where the name does not tell it");
  }
  static void AddEncoding(CLI::App* command, Encoding& encoding, const char* help) {
    const std::map<std::string, Encoding> words = {{"auto", Encoding::Auto},
                                                   {"utf-8", Encoding::Utf8},
                                                   {"utf-16", Encoding::Utf16},
                                                   {"ansi", Encoding::Ansi}};
    AddWord(command, "--encoding", encoding, words, help);
  }

  /// An option that takes one of some words.
  template <class Value>
  static void AddWord(CLI::App* command, const char* name, Value& value,
                      const std::map<std::string, Value>& words, const char* help) {
    std::string choice;
    for (const auto& [word, unused] : words) choice += (choice.empty() ? "" : "|") + word;
    command
        ->add_option_function<std::string>(
            name, [&value, words](const std::string& word) { value = words.at(word); }, help)
        ->check(CLI::IsMember(words))
        ->option_text(choice);
  }

  void AddTexts(CLI::App* command, SnippetTexts& texts) {
    auto* code = command->add_option("-c,--code", texts.code, "the code");
    command
        ->add_option("-C,--code-file", texts.codeFile, "the file with the code, or - for the standard input")
        ->excludes(code);
    auto* description = command->add_option("-d,--description", texts.description, "the description");
    command->add_option("-D,--description-file", texts.descriptionFile, "the file with the description, or -")
        ->excludes(description);
    command->add_option("-a,--attachment", texts.attachment, "the path of an attached file");
    AddEncoding(command, texts.encoding, "of the files: UTF-8 or else ANSI, unless this says otherwise");
    AddLossy(command);
  }

  void AddReading() {
    auto list = std::make_shared<ListOptions>();
    auto* command = Command("list", "list the snippets of a library", list, List);
    AddLibrary(command, list->library);
    command->add_flag("-l,--long", list->details,
                      "with the first line of the description, and the attachment");
    AddJson(command);

    auto show = std::make_shared<ShowOptions>();
    command = Command("show", "write a snippet out", show, Show);
    AddLibrary(command, show->library);
    AddSnippet(command, show->snippet);
    using What = ShowOptions::What;
    command->add_flag_callback(
        "-c,--code", [show] { show->what = What::Code; }, "only the code");
    command->add_flag_callback(
        "-d,--description", [show] { show->what = What::Description; }, "only the description");
    command->add_flag_callback(
        "-a,--attachment", [show] { show->what = What::Attachment; }, "only the path of the attached file");
    command->add_flag("--raw", show->raw, "the library's bytes: its code page, lines ending with CR LF");
    AddJson(command);

    auto search = std::make_shared<SearchOptions>();
    command = Command("search", "find text in libraries", search, Search);
    command->add_option("PATTERN", search->pattern, "what to find, in one line")->required();
    AddLibraries(command, search->libraries);
    command->add_flag("-i,--ignore-case", search->ignoreCase, "take capitals and small letters for the same");
    command->add_flag("-w,--word", search->wholeWord, "only whole words");
    command->add_flag("-E,--regex", search->regularExpression, "the pattern is a regular expression");
    command->add_option("--in", search->in, "where to look; everywhere without")
        ->delimiter(',')
        ->check(CLI::IsMember({"name", "description", "code"}))
        ->option_text("name,description,code");
    auto* names = command->add_flag("-l,--names", search->namesOnly, "only the names of the snippets");
    command->add_flag("-n,--count", search->countOnly, "only the number of lines")->excludes(names);
    AddJson(command);

    auto check = std::make_shared<CheckOptions>();
    command = Command("check", "tell what is wrong in libraries, and on which lines", check, Check);
    AddLibraries(command, check->libraries);
    command->add_flag("--strict", check->strict, "exit with 1 for warnings as well");
    AddJson(command);

    auto stats = std::make_shared<StatsOptions>();
    command = Command("stats", "count what libraries hold", stats, Stats);
    AddLibraries(command, stats->libraries);
    AddJson(command);
  }

  void AddChanging() {
    constexpr const char* lossyChange = "change the library though something of its file is lost";
    auto add = std::make_shared<AddOptions>();
    auto* command = Command("add", "put a snippet at the end of a library", add, Add);
    AddLibrary(command, add->library);
    command->add_option("NAME", add->name, "the new snippet's name")->required();
    AddTexts(command, add->texts);
    command->add_flag("--create", add->create, "make the library if it is not there");
    command->add_flag("--same-name", add->sameName, "also where there is a snippet of that name");

    auto edit = std::make_shared<EditOptions>();
    command = Command("edit", "change the texts of a snippet", edit, Edit);
    AddLibrary(command, edit->library);
    AddSnippet(command, edit->snippet);
    AddTexts(command, edit->texts);

    auto remove = std::make_shared<RemoveOptions>();
    command = Command("remove", "take snippets out of a library", remove, Remove);
    AddLibrary(command, remove->library);
    command->add_option("SNIPPET", remove->snippets, "the snippets' names, or # and their numbers")
        ->required();
    AddLossy(command, lossyChange);

    auto rename = std::make_shared<RenameOptions>();
    command = Command("rename", "give a snippet another name", rename, Rename);
    AddLibrary(command, rename->library);
    AddSnippet(command, rename->snippet);
    command->add_option("NAME", rename->name, "its new name")->required();
    command->add_flag("--same-name", rename->sameName, "also where there is a snippet of that name");
    AddLossy(command);

    auto move = std::make_shared<MoveOptions>();
    command = Command("move", "put a snippet elsewhere in its library, or into another", move, Move);
    AddLibrary(command, move->library);
    AddSnippet(command, move->snippet);
    auto* where = command->add_option_group("where", "Where to:");
    where->add_option("--to", move->position, "the position, from 1");
    where->add_option("--before", move->before, "in front of this snippet");
    where->add_option("--after", move->after, "behind this snippet");
    where->add_option("--into", move->into, "to the end of this other library");
    where->require_option(1);
    AddLossy(command, lossyChange);

    auto convert = std::make_shared<ConvertOptions>();
    command = Command("convert", "make a library of version 1 one of version 2", convert, Convert);
    AddLibrary(command, convert->library);
    command->add_option("-o,--output", convert->output, "write a new file, or - for the standard output");
    AddLossy(command, "convert though something of the file is lost");
  }

  void AddExchange() {
    auto merge = std::make_shared<MergeOptions>();
    auto* command = Command("merge", "put the snippets of libraries into another", merge, Merge);
    command->add_option("LIBRARY", merge->library, "the library that takes them")->required();
    command->add_option("SOURCE", merge->sources, "the libraries they come from")->required();
    AddWord(command, "--same-name", merge->sameName, {{"skip", SameName::Skip}, {"number", SameName::Number}},
            "what becomes of a snippet whose name another has: left out, or numbered");
    AddTransfer(command, merge->dryRun, merge->create);

    auto exporting = std::make_shared<ExportOptions>();
    command = Command("export", "write a library in another tool's format", exporting, Export);
    AddLibrary(command, exporting->library);
    command
        ->add_option("OUTPUT", exporting->output,
                     "FILE.snippet, FILE.code-snippets, FILE.json, a new folder FOLDER/ for .bas files, or -")
        ->required();
    AddFormat(command, exporting->format);
    command->add_option("-s,--snippet", exporting->snippets, "only this one; may be repeated")
        ->expected(1)
        ->take_all();
    command->add_flag("--as-templates", exporting->asTemplates,
                      "take the code for template text: its $ signs are placeholders");
    command->add_flag("--force", exporting->force, "overwrite a file");
    command->add_flag("--dry-run", exporting->dryRun, "only tell what would come of it");
    AddLossy(command);
    AddJson(command);

    auto import = std::make_shared<ImportCommandOptions>();
    command = Command("import", "take snippets over from another tool", import, Import);
    AddLibrary(command, import->library);
    command->add_option("SOURCE", import->sources, "files or folders of the other tool, or -")->required();
    AddFormat(command, import->format);
    AddWord(command, "--templates", import->reading.templates,
            {{"fill", Templates::Fill}, {"text", Templates::AsText}, {"skip", Templates::LeaveOut}},
            "what becomes of snippets with placeholders: filled with their default texts, kept as they are "
            "written, or left out");
    command->add_flag("--all-languages", import->reading.allLanguages, "also snippets of other languages");
    AddWord(command, "--same-name", import->sameName,
            {{"skip", SameName::Skip}, {"number", SameName::Number}},
            "what becomes of a snippet whose name another has: left out, or numbered");
    AddEncoding(command, import->encoding,
                "of .bas files: ANSI unless a byte order mark or this says otherwise");
    AddTransfer(command, import->dryRun, import->create);
  }

  void AddTransfer(CLI::App* command, bool& dryRun, bool& create) {
    command->add_flag("--dry-run", dryRun, "only tell what would come of it");
    command->add_flag("--create", create, "make the library if it is not there");
    AddLossy(command);
    AddJson(command);
  }

  Session& session_;
  CLI::App app_{
      "Reads, searches and changes Snipstore's libraries, and carries snippets to and from other tools.",
      "bns"};
  ExitCode exitCode_ = ExitCode::Done;
};

}  // namespace

ExitCode RunCommandLine(std::vector<std::string> arguments, Terminal& terminal, const CodePage& page) {
  Session session(terminal, page);
  Syntax syntax(session);
  ExitCode code = ExitCode::Done;
  try {
    std::reverse(arguments.begin(), arguments.end());  // as the parser wants them
    syntax.app().parse(std::move(arguments));
    code = syntax.exitCode();
  } catch (const CLI::ParseError& error) {
    std::ostringstream output;
    std::ostringstream complaint;
    const bool wrong = syntax.app().exit(error, output, complaint) != 0;
    terminal.Write(output.str());
    std::string message = complaint.str();
    if (message.ends_with('\n')) message.pop_back();
    if (wrong) terminal.Complain(message);
    code = wrong ? ExitCode::Usage : ExitCode::Done;
  } catch (const std::exception&) {
    // What was found before is still worth having.
    terminal.Flush();
    throw;
  }
  terminal.Flush();
  return code;
}

}  // namespace snip
