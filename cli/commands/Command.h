#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/commands/LibraryFile.h"
#include "cli/commands/Session.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace snip {

/// A command of `bns`, in a file of its own. Its constructor declares the options; their texts are UTF-8, and
/// paths may be "-" for the standard streams. The command line's help, completion and manual page are made of
/// these declarations.
class Command {
 public:
  Command(CLI::App& app, Session& session, const char* name, const char* help);
  virtual ~Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  /// Does the work; throws a Failure to end it early.
  virtual ExitCode Run() = 0;

 protected:
  // Arguments, which are required, and options. Completion knows the values LIBRARY, SNIPPET, FILE and PATH,
  // and words that are separated by "|" or ",".
  void AddText(const char* name, std::string& value, const char* help);
  void AddTexts(const char* name, std::vector<std::string>& values, const char* help);
  void AddOptionalText(const char* name, std::optional<std::string>& value, const char* help);
  void AddFlag(const char* names, bool& value, const char* help);
  void AddOption(const char* names, std::optional<std::string>& value, const char* text, const char* help);
  /// A number, at least 1.
  void AddOption(const char* names, std::optional<std::size_t>& value, const char* text, const char* help);
  /// An option that may be given several times.
  void AddList(const char* names, std::vector<std::string>& values, const char* text, const char* help);
  /// An option that takes some of the words, with commas between them.
  void AddWordList(const char* name, std::vector<std::string>& values, const std::vector<std::string>& words,
                   const char* help);
  /// An option that takes one of some words.
  template <class Value>
  void AddWord(const char* name, Value& value, const std::map<std::string, Value>& words, const char* help) {
    std::vector<std::string> names;
    names.reserve(words.size());
    for (const auto& [word, unused] : words) names.push_back(word);
    AddWord(name, names, help, [&value, words](const std::string& word) { value = words.at(word); });
  }
  void AddWord(const char* name, const std::vector<std::string>& words, const char* help,
               const std::function<void(const std::string&)>& take);
  /// Allows only one of two options.
  void Exclude(const char* oneName, const char* otherName);

  // Options of several commands.
  void AddLibrary(std::string& library);
  void AddLibraries(std::vector<std::string>& libraries);
  void AddSnippet(std::string& snippet);
  void AddSameName(bool& sameName);
  void AddCreate(bool& create);
  void AddJson();
  void AddLossy();
  /// For a command that rewrites libraries: --lossy allows it to lose damaged data.
  void AddLossyChange();
  void AddDryRun();
  void AddEncoding(Encoding& encoding, const char* help);

  CLI::App& parser_;
  Session& session_;
};

/// The texts of a snippet as options of `add` and `edit`.
struct SnippetTexts {
  std::optional<std::string> code;  ///< The texts themselves,
  std::optional<std::string> description;
  std::optional<std::string> attachment;
  std::optional<std::string> codeFile;  ///< or the files that hold them.
  std::optional<std::string> descriptionFile;
  Encoding encoding = Encoding::Auto;

  bool empty() const { return !code && !description && !attachment && !codeFile && !descriptionFile; }
  /// Replaces those texts of a snippet that were given.
  void Apply(Session& session, Snippet& snippet) const;
};

/// A command that takes the texts of a snippet.
class SnippetTextCommand : public Command {
 public:
  using Command::Command;

 protected:
  void AddSnippetTexts();

  SnippetTexts texts_;
};

/// Throws a Failure if another snippet than the one at `position` has that name.
void CheckNameIsFree(const std::vector<Snippet>& snippets, const std::string& name, std::size_t position,
                     const CodePage& page);

}  // namespace snip
