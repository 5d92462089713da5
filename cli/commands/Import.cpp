#include <filesystem>
#include <utility>

#include "cli/commands/ExchangeFormat.h"
#include "cli/commands/LibraryFile.h"
#include "cli/commands/MergeSnippets.h"
#include "cli/exchange/BasFolder.h"
#include "cli/exchange/VisualStudioSnippets.h"
#include "cli/exchange/VsCodeSnippets.h"
#include "cli/files/Paths.h"

namespace snip {
namespace {

/// A folder's files, or the one file that was named.
std::vector<FolderFile> FilesOf(Session& session, const std::string& path) {
  std::vector<FolderFile> files;
  const std::filesystem::path named = ToPath(path);
  const auto add = [&](const std::filesystem::path& file) {
    const std::string name = ToUtf8(file.filename());
    const bool wanted = file.extension() == ".bas" || file.extension() == ".BAS" || name == kBasIndex;
    if (wanted) files.push_back({.name = name, .bytes = std::string(session.Read(ToUtf8(file)).view())});
  };
  std::error_code error;
  if (!std::filesystem::exists(named, error)) throw Failure(ExitCode::File, ToUtf8(named) + ": is not there");
  if (!std::filesystem::is_directory(named, error)) {
    add(named);
    return files;
  }
  std::filesystem::directory_iterator each(named, error);
  if (error) throw Failure(ExitCode::File, ToUtf8(named) + ": cannot be read");
  for (const std::filesystem::directory_entry& entry : each) {
    if (entry.is_regular_file()) add(entry.path());
  }
  return files;
}

std::string BytesIfThere(Session& session, const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::exists(ToPath(path), ignored)) return {};
  return std::string(session.Read(path).view());
}

Imported ReadSource(Session& session, const ImportCommandOptions& options, const std::string& path) {
  const Format format = FormatOf(options.format, path);
  std::string place = path;
  try {
    if (format == Format::Bas) {
      place = ToUtf8(ToPath(path) / std::string(kBasIndex));
      return ReadBasFolder(FilesOf(session, path), options.encoding, session.page);
    }
    const FileBytes file = session.Read(path);
    if (format == Format::VisualStudio) {
      return ReadVisualStudioSnippets(file.view(), options.reading, session.page);
    }
    const std::string attachments = path == "-" ? "" : BytesIfThere(session, AttachmentsBeside(path));
    return ReadVsCodeSnippets(file.view(), attachments, options.reading, session.page);
  } catch (const Malformed& malformed) {
    throw MalformedFile(place, malformed);
  }
}

}  // namespace

ExitCode Import(Session& session, const ImportCommandOptions& options) {
  LibraryFile library = options.create ? LibraryFile::ForChangeOrNew(session, options.library)
                                       : LibraryFile::ForChange(session, options.library);
  Outcome outcome;
  for (const std::string& path : options.sources) {
    Imported imported = ReadSource(session, options, path);
    for (const LossNote& note : imported.outcome.notes()) {
      outcome.Note(note.loss, note.snippet, note.count, note.detail);
    }
    MergeSnippets(library.snippets, std::move(imported.snippets), options.sameName, session.page, outcome);
  }
  if (outcome.LosesText() && !session.lossy && !options.dryRun) {
    Report(session, outcome, "imported", true);
    throw Failure(ExitCode::Refused, "nothing was written, since text would be lost; --lossy allows that");
  }
  if (!options.dryRun && (outcome.carried > 0 || library.isNew())) library.Save();
  return Report(session, outcome, "imported", options.dryRun);
}

}  // namespace snip
