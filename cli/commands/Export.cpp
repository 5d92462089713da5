#include <filesystem>
#include <utility>

#include "cli/commands/Commands.h"
#include "cli/commands/Transfer.h"
#include "cli/exchange/BasFolder.h"
#include "cli/exchange/VisualStudioSnippets.h"
#include "cli/exchange/VsCodeSnippets.h"
#include "cli/system/SafeWrite.h"

namespace snip {
namespace {

/// Writes the files into a temporary folder and renames it, so that all files appear or none.
void WriteFolder(const std::string& path, const std::vector<FolderFile>& files) {
  std::filesystem::path target = ToPath(path);
  if (target.filename().empty()) target = target.parent_path();
  std::error_code error;
  const bool exists = std::filesystem::exists(target, error);
  if (exists && !(std::filesystem::is_directory(target, error) && std::filesystem::is_empty(target, error))) {
    throw Failure(ExitCode::Refused, ToUtf8(target) + ": already exists and is not an empty folder");
  }
  std::filesystem::path working = target;
  working += ".bns-new";
  if (!std::filesystem::create_directory(working, error)) {
    throw Failure(ExitCode::File, ToUtf8(working) + ": the folder cannot be created");
  }
  try {
    for (const FolderFile& file : files) {
      WriteFileSafely(ToUtf8(working / ToPath(file.name)), file.bytes, Existing::Keep);
    }
    if (exists) std::filesystem::remove(target);
    std::filesystem::rename(working, target);
  } catch (const std::exception&) {
    std::filesystem::remove_all(working, error);
    throw;
  }
}

class Export : public Command {
 public:
  Export(CLI::App& app, Session& session)
      : Command(app, session, "export", "write a library in another tool's format") {
    AddLibrary(library_);
    AddText("OUTPUT", output_,
            "FILE.snippet, FILE.code-snippets, FILE.json, a new folder FOLDER/ for .bas files, or -");
    AddWord("--format", format_, FormatWords(), kFormatHelp);
    AddList("-s,--snippet", chosen_, "SNIPPET", "only this snippet; may be repeated");
    AddFlag("--as-templates", asTemplates_, "the code is template text: its $ signs are placeholders");
    AddFlag("--force", force_, "overwrite a file");
    AddDryRun();
    AddLossy();
    AddJson();
  }

  ExitCode Run() override {
    const Format format = FormatOf(format_, output_);
    const bool toOutput = output_ == "-";
    const std::vector<Snippet> snippets = ChosenSnippets();
    ConversionReport report;
    std::vector<FolderFile> files;  // for a folder; otherwise the first is the exported file
    if (format == Format::Bas) {
      if (toOutput) throw Failure(ExitCode::Usage, "a folder cannot be written to the standard output");
      if (asTemplates_) throw Failure(ExitCode::Usage, ".bas files have no templates");
      files = WriteBasFolder(snippets, session_.page, report);
    } else if (format == Format::VisualStudio) {
      files.push_back({output_, WriteVisualStudioSnippets(snippets, asTemplates_, session_.page, report)});
    } else {
      VsCodeFiles code = WriteVsCodeSnippets(snippets, asTemplates_, session_.page, report);
      files.push_back({output_, std::move(code.snippets)});
      if (!toOutput && !code.attachments.empty()) {
        files.push_back({AttachmentsBeside(output_), std::move(code.attachments)});
      }
      for (const Snippet& snippet : snippets) {
        if (!toOutput || snippet.Attachment.empty()) continue;
        report.Note(Loss::Attachment, session_.page.ToUtf8(snippet.Name));
      }
    }
    RequireAllCharacters(session_, report, "exported");
    if (!session_.dryRun && format == Format::Bas) {
      WriteFolder(output_, files);
    } else if (!session_.dryRun) {
      WriteFiles(files);
    }
    // JSON after the exported file on the standard output would damage both.
    if (session_.json && toOutput && !session_.dryRun) return ExitCode::Done;
    return PrintReport(session_, report, "exported");
  }

 private:
  std::vector<Snippet> ChosenSnippets() {
    LibraryFile library(session_, library_);
    if (chosen_.empty()) return std::move(library.snippets);
    std::vector<Snippet> snippets;
    for (const std::string& which : chosen_) snippets.push_back(library.snippets[library.Find(which)]);
    return snippets;
  }

  void WriteFiles(const std::vector<FolderFile>& files) {
    std::error_code ignored;
    for (const FolderFile& file : files) {
      if (file.name == "-" || force_ || !std::filesystem::exists(ToPath(file.name), ignored)) continue;
      throw Failure(ExitCode::Refused, NameOf(file.name) + ": already exists; --force overwrites it");
    }
    for (const FolderFile& file : files) {
      if (file.name == "-") {
        session_.terminal.WriteBytes(file.bytes);
      } else {
        WriteFileSafely(file.name, file.bytes, force_ ? Existing::Replace : Existing::Keep);
      }
    }
  }

  std::string library_;
  std::string output_;
  Format format_ = Format::ByName;
  std::vector<std::string> chosen_;  ///< All if empty.
  bool asTemplates_ = false;
  bool force_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeExport(CLI::App& app, Session& session) {
  return std::make_unique<Export>(app, session);
}

}  // namespace snip
