#include <filesystem>
#include <utility>

#include "cli/commands/Commands.h"
#include "cli/commands/ExchangeFormat.h"
#include "cli/commands/LibraryFile.h"
#include "cli/commands/MergeSnippets.h"
#include "cli/exchange/BasFolder.h"
#include "cli/exchange/VisualStudioSnippets.h"
#include "cli/exchange/VsCodeSnippets.h"
#include "cli/files/Paths.h"
#include "cli/files/SafeWrite.h"

namespace snip {
namespace {

/// A file to be written; the first of several is the one that was asked for.
struct Output {
  std::string path;
  std::string bytes;
};

/// Writes the files into a folder of another name, which then gets its own: all are there or none.
void WriteFolder(const std::string& path, const std::vector<FolderFile>& files) {
  std::filesystem::path target = ToPath(path);
  if (target.filename().empty()) target = target.parent_path();
  std::error_code error;
  const bool exists = std::filesystem::exists(target, error);
  if (exists && !(std::filesystem::is_directory(target, error) && std::filesystem::is_empty(target, error))) {
    throw Failure(ExitCode::Refused, ToUtf8(target) + ": exists already and is no empty folder");
  }
  std::filesystem::path working = target;
  working += ".bns-new";
  if (!std::filesystem::create_directory(working, error)) {
    throw Failure(ExitCode::File, ToUtf8(working) + ": the folder cannot be made");
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

std::vector<Snippet> Chosen(LibraryFile& library, const std::vector<std::string>& names) {
  if (names.empty()) return std::move(library.snippets);
  std::vector<Snippet> chosen;
  chosen.reserve(names.size());
  for (const std::string& name : names) chosen.push_back(library.snippets[library.Find(name)]);
  return chosen;
}

void WriteOutputs(Session& session, const ExportOptions& options, const std::vector<Output>& outputs) {
  std::error_code ignored;
  for (const Output& output : outputs) {
    const bool inTheWay =
        output.path != "-" && !options.force && std::filesystem::exists(ToPath(output.path), ignored);
    if (inTheWay) {
      throw Failure(ExitCode::Refused,
                    Session::NameOf(output.path) + ": exists already; --force overwrites it");
    }
  }
  for (const Output& output : outputs) {
    if (output.path == "-") {
      session.terminal.WriteBytes(output.bytes);
    } else {
      WriteFileSafely(output.path, output.bytes, options.force ? Existing::Replace : Existing::Keep);
    }
  }
}

}  // namespace

ExitCode Export(Session& session, const ExportOptions& options) {
  const Format format = FormatOf(options.format, options.output);
  const bool toOutput = options.output == "-";
  LibraryFile library(session, options.library);
  const std::vector<Snippet> snippets = Chosen(library, options.snippets);
  Outcome outcome;
  std::vector<Output> outputs;
  std::vector<FolderFile> folder;
  if (format == Format::Bas) {
    if (toOutput) throw Failure(ExitCode::Usage, "a folder cannot go to the standard output");
    if (options.asTemplates) throw Failure(ExitCode::Usage, ".bas files have no templates");
    folder = WriteBasFolder(snippets, session.page, outcome);
  } else if (format == Format::VisualStudio) {
    outputs.push_back(
        {options.output, WriteVisualStudioSnippets(snippets, options.asTemplates, session.page, outcome)});
  } else {
    VsCodeFiles files = WriteVsCodeSnippets(snippets, options.asTemplates, session.page, outcome);
    outputs.push_back({options.output, std::move(files.snippets)});
    if (!toOutput && !files.attachments.empty()) {
      outputs.push_back({AttachmentsBeside(options.output), std::move(files.attachments)});
    }
    for (const Snippet& snippet : snippets) {
      // The standard output has nothing beside it.
      if (toOutput && !snippet.Attachment.empty())
        outcome.Note(Loss::Attachment, session.page.ToUtf8(snippet.Name));
    }
  }
  if (outcome.LosesText() && !session.lossy) {
    Report(session, outcome, "exported", true);
    throw Failure(ExitCode::Refused, "nothing was written, since text would be lost; --lossy allows that");
  }
  if (!options.dryRun) {
    if (format == Format::Bas) WriteFolder(options.output, folder);
    WriteOutputs(session, options, outputs);
  }
  // A report in JSON would run into what is on the standard output.
  if (session.json && toOutput && !options.dryRun) return ExitCode::Done;
  return Report(session, outcome, "exported", options.dryRun);
}

}  // namespace snip
