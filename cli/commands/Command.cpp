#include "cli/commands/Command.h"

#include <CLI/CLI.hpp>

namespace snip {

Command::Command(CLI::App& app, Session& session, const char* name, const char* help)
    : parser_(*app.add_subcommand(name, help)), session_(session) {
  parser_.footer("");  // drops the footer of the program's own help
}

void Command::AddText(const char* name, std::string& value, const char* help) {
  parser_.add_option(name, value, help)->required()->type_name("");
}

void Command::AddTexts(const char* name, std::vector<std::string>& values, const char* help) {
  parser_.add_option(name, values, help)->required()->type_name("");
}

void Command::AddOptionalText(const char* name, std::optional<std::string>& value, const char* help) {
  parser_.add_option(name, value, help)->type_name("");
}

void Command::AddFlag(const char* names, bool& value, const char* help) {
  parser_.add_flag(names, value, help);
}

void Command::AddOption(const char* names, std::optional<std::string>& value, const char* text,
                        const char* help) {
  parser_.add_option(names, value, help)->option_text(text);
}

void Command::AddOption(const char* names, std::optional<std::size_t>& value, const char* text,
                        const char* help) {
  const auto fromOne = [](const std::string& number) {
    return std::string(number.find_first_not_of('0') == std::string::npos ? "has to be 1 or more" : "");
  };
  parser_.add_option(names, value, help)->check(fromOne)->option_text(text);
}

void Command::AddList(const char* names, std::vector<std::string>& values, const char* text,
                      const char* help) {
  parser_.add_option(names, values, help)->expected(1)->take_all()->option_text(text);
}

void Command::AddWordList(const char* name, std::vector<std::string>& values,
                          const std::vector<std::string>& words, const char* help) {
  parser_.add_option(name, values, help)
      ->delimiter(',')
      ->check(CLI::IsMember(words))
      ->option_text(CLI::detail::join(words, ","));
}

void Command::AddWord(const char* name, const std::vector<std::string>& words, const char* help,
                      const std::function<void(const std::string&)>& take) {
  parser_.add_option_function(name, take, help)
      ->check(CLI::IsMember(words))
      ->option_text(CLI::detail::join(words, "|"));
}

void Command::Exclude(const char* oneName, const char* otherName) {
  parser_.get_option(oneName)->excludes(parser_.get_option(otherName));
}

void Command::AddLibrary(std::string& library) {
  AddText("LIBRARY", library, "the library's file, or - for the standard input and output");
}

void Command::AddLibraries(std::vector<std::string>& libraries) {
  AddTexts("LIBRARY", libraries, "the libraries' files, or - for the standard input");
}

void Command::AddSnippet(std::string& snippet) {
  AddText("SNIPPET", snippet, "the snippet's name, or # and its number");
}

void Command::AddSameName(bool& sameName) {
  AddFlag("--same-name", sameName, "allow a duplicate name");
}

void Command::AddCreate(bool& create) {
  AddFlag("--create", create, "create the library if it does not exist");
}

void Command::AddJson() {
  AddFlag("--json", session_.json, "print JSON, for scripts");
}

void Command::AddLossy() {
  AddFlag("--lossy", session_.lossy, "replace characters outside the code page with \"?\"");
}

void Command::AddLossyChange() {
  AddFlag("--lossy", session_.lossy, "write even if data in the file cannot be kept");
}

void Command::AddDryRun() {
  AddFlag("--dry-run", session_.dryRun, "show what would be done; write nothing");
}

void Command::AddEncoding(Encoding& encoding, const char* help) {
  AddWord("--encoding", encoding,
          std::map<std::string, Encoding>{{"auto", Encoding::Auto},
                                          {"utf-8", Encoding::Utf8},
                                          {"utf-16", Encoding::Utf16},
                                          {"ansi", Encoding::Ansi}},
          help);
}

void SnippetTextCommand::AddSnippetTexts() {
  AddOption("-c,--code", texts_.code, "TEXT", "the code");
  AddOption("-C,--code-file", texts_.codeFile, "FILE", "the file with the code, or - for the standard input");
  AddOption("-d,--description", texts_.description, "TEXT", "the description");
  AddOption("-D,--description-file", texts_.descriptionFile, "FILE", "the file with the description, or -");
  AddOption("-a,--attachment", texts_.attachment, "PATH", "the path of an attached file");
  Exclude("--code", "--code-file");
  Exclude("--description", "--description-file");
  AddEncoding(texts_.encoding,
              "of the files; without it, UTF-16 or UTF-8 by byte order mark, UTF-8 if valid, else ANSI");
  AddLossy();
}

void SnippetTexts::Apply(Session& session, Snippet& snippet) const {
  const auto lines = [&](const std::string& utf8) { return WithCrLf(session.Argument(utf8)).text; };
  if (code) snippet.Code = lines(*code);
  if (codeFile) snippet.Code = session.TextOfFile(*codeFile, encoding);
  if (description) snippet.Description = lines(*description);
  if (descriptionFile) snippet.Description = session.TextOfFile(*descriptionFile, encoding);
  if (attachment) snippet.Attachment = session.Argument(*attachment);
}

void CheckNameIsFree(const std::vector<Snippet>& snippets, const std::string& name, std::size_t position,
                     const CodePage& page) {
  for (std::size_t i = 0; i < snippets.size(); ++i) {
    if (i == position || snippets[i].Name != name) continue;
    throw Failure(ExitCode::Refused,
                  "a snippet \"" + page.ToUtf8(name) + "\" already exists; --same-name allows another");
  }
}

}  // namespace snip
