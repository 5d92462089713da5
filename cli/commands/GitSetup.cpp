#include <cstdlib>
#include <filesystem>
#include <utility>

#include "cli/commands/Commands.h"
#include "cli/system/Process.h"
#include "cli/system/SafeWrite.h"

namespace snip {
namespace {

/// A line of git's attributes: keeps bytes unchanged, and uses two drivers of the configuration.
constexpr std::string_view kAttributes = "*.bns -text diff=bns merge=bns";

constexpr const char* kSections[] = {"merge.bns", "diff.bns"};
/// Names and values of the configuration.
constexpr std::pair<const char*, const char*> kConfiguration[] = {
    {"merge.bns.name", "Snipstore libraries"},
    {"merge.bns.driver", "bns merge --base %O --label=%P %A %B"},
    {"diff.bns.textconv", "bns diff --textconv"},
    {"diff.bns.xfuncname", "^Snippet (.*)$"}};

class GitSetup : public Command {
 public:
  GitSetup(CLI::App& app, Session& session)
      : Command(app, session, "git-setup", "make git merge and compare libraries by snippets") {
    AddFlag("--global", global_, "for all repositories of the user, not only this one");
    AddFlag("--undo", undo_, "take it back");
    AddDryRun();
  }

  ExitCode Run() override {
    if (!OutputOf("git --version")) throw Failure(ExitCode::File, "git cannot be run");
    const std::string attributes = AttributesFile();
    for (const char* section : kSections) {
      // With the section twice, the driver would be there twice.
      const bool exists =
          OutputOf(Git("config " + Scope() + " --get-regexp ^" + section + "[.]")).has_value();
      if (undo_ && exists) Do("config " + Scope() + " --remove-section " + section);
    }
    if (!undo_) {
      for (const auto& [name, value] : kConfiguration) {
        Do("config " + Scope() + " " + name + " \"" + value + "\"");
      }
    }
    ChangeAttributes(attributes);
    if (!undo_ && !OutputOf("bns --version")) {
      session_.terminal.Complain("git will not find bns: its folder is not in PATH");
    }
    return ExitCode::Done;
  }

 private:
  std::string Scope() const { return global_ ? "--global" : "--local"; }
  static std::string Git(const std::string& arguments) { return "git " + arguments; }

  static std::string LineOf(std::optional<std::string> output) {
    if (!output) return {};
    while (output->ends_with('\n') || output->ends_with('\r')) output->pop_back();
    return *output;
  }

  /// Prints a command of git and runs it.
  void Do(const std::string& arguments) {
    session_.WriteLine(Git(arguments));
    if (!session_.dryRun && !OutputOf(Git(arguments))) {
      throw Failure(ExitCode::File, "git failed: " + arguments);
    }
  }

  /// The repository's attributes file, which is shared with its other users, or the user's.
  std::string AttributesFile() const {
    if (!global_) {
      const std::string top = LineOf(OutputOf(Git("rev-parse --show-toplevel")));
      if (top.empty())
        throw Failure(ExitCode::File, "this folder is not in the work tree of a git repository");
      return top + "/.gitattributes";
    }
    std::string chosen = LineOf(OutputOf(Git("config --global --type=path core.attributesFile")));
    if (!chosen.empty()) return chosen;
    const auto variable = [](const char* name) {
      const char* const value = std::getenv(name);
      return std::string(value == nullptr ? "" : value);
    };
    const std::string configuration = variable("XDG_CONFIG_HOME");
    if (!configuration.empty()) return configuration + "/git/attributes";
    std::string home = variable("HOME");
    if (home.empty()) home = variable("USERPROFILE");
    if (home.empty()) throw Failure(ExitCode::File, "HOME is not set");
    return home + "/.config/git/attributes";
  }

  /// Adds the line at the end, or removes it, which restores the file byte for byte.
  void ChangeAttributes(const std::string& path) {
    std::error_code ignored;
    const bool exists = std::filesystem::exists(ToPath(path), ignored);
    std::string text = exists ? session_.Read(path) : "";
    const std::string line(kAttributes);
    // Git for Windows may check the file out with CR LF.
    const std::string lineEnding = text.find("\r\n") == std::string::npos ? "\n" : "\r\n";
    const std::size_t at = (lineEnding + text + lineEnding).find(lineEnding + line + lineEnding);
    const bool there = at != std::string::npos;
    if (there != undo_) return;
    if (!undo_) {
      const bool withinLine = !text.empty() && !text.ends_with('\n');
      text += withinLine ? lineEnding + line : line + lineEnding;
    } else if (at + line.size() == text.size()) {
      text.erase(at > 0 ? at - lineEnding.size() : 0);  // with the line ending before it
    } else {
      text.erase(at, line.size() + lineEnding.size());
    }
    session_.WriteLine(NameOf(path) + (undo_ ? ": remove: " : ": add: ") + line);
    if (session_.dryRun) return;
    if (text.empty()) {
      std::filesystem::remove(ToPath(path));
      return;
    }
    if (!exists) std::filesystem::create_directories(ToPath(path).parent_path());
    WriteFileSafely(path, text, exists ? Existing::Replace : Existing::Keep);
  }

  bool global_ = false;
  bool undo_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeGitSetup(CLI::App& app, Session& session) {
  return std::make_unique<GitSetup>(app, session);
}

}  // namespace snip
