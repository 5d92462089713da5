#pragma once

#include <string>

#include "cli/commands/Command.h"
#include "cli/exchange/ConversionReport.h"
#include "cli/exchange/SnippetImporter.h"

namespace snip {

/// A command that adds snippets from elsewhere to a library.
class Transfer : public Command {
 public:
  using Command::Command;

 protected:
  void AddTransfer();

  /// Adds snippets at the end of the library, except those that it has already with the same texts. A snippet
  /// whose name is taken is skipped or gets a number; nothing is overwritten.
  void AddSnippets(LibraryFile& library, Imported imported);

  bool create_ = false;
  ConversionReport report_;

 private:
  bool numberSameNames_ = false;
};

/// Prints the report of a merge, an import or an export; `done` is what happened to the snippets that were
/// carried over. The exit code says whether some were skipped.
ExitCode PrintReport(Session& session, const ConversionReport& report, const std::string& done);

/// Throws a Failure after the report if characters would be lost and the session does not allow that.
void RequireAllCharacters(Session& session, const ConversionReport& report, const std::string& done);

// The formats of other tools.

enum class Format { ByName, VisualStudio, VsCode, Bas };

/// The words of --format.
std::map<std::string, Format> FormatWords();
constexpr const char* kFormatHelp = "the other tool's format, if the file's name does not tell it";

/// `wanted`, or else the format of the extension or of a folder. Throws a Failure for another extension.
Format FormatOf(Format wanted, const std::string& path);

/// The file with the paths of attachments that belongs to a VS Code file.
std::string AttachmentsBeside(const std::string& path);

}  // namespace snip
