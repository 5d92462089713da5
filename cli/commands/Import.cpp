#include <filesystem>
#include <utility>

#include "cli/commands/Commands.h"
#include "cli/commands/Transfer.h"
#include "cli/exchange/BasFolder.h"
#include "cli/exchange/VisualStudioSnippets.h"
#include "cli/exchange/VsCodeSnippets.h"

namespace snip {
namespace {

class Import : public Transfer {
 public:
  Import(CLI::App& app, Session& session)
      : Transfer(app, session, "import", "add snippets from another tool to a library") {
    AddLibrary(library_);
    AddTexts("SOURCE", sources_, "files or folders of the other tool, or -");
    AddWord("--format", format_, FormatWords(), kFormatHelp);
    AddWord("--templates", options_.templates,
            std::map<std::string, Templates>{{"fields", Templates::Fields},
                                             {"fill", Templates::Fill},
                                             {"text", Templates::AsText},
                                             {"skip", Templates::Skip}},
            "placeholders become fields (the default), become their default texts, or are kept as text; or "
            "skip snippets that have any");
    AddFlag("--all-languages", options_.allLanguages, "also snippets that are not Visual Basic");
    AddEncoding(encoding_, "of .bas files; without it, ANSI unless there is a byte order mark");
    AddTransfer();
  }

  ExitCode Run() override {
    LibraryFile library = LibraryFile::ForChange(session_, library_, create_);
    for (const std::string& path : sources_) AddSnippets(library, ReadSource(path));
    if (!session_.dryRun) RequireAllCharacters(session_, report_, "imported");
    if (!session_.dryRun && (report_.carried > 0 || library.isNew())) library.Save();
    return PrintReport(session_, report_, "imported");
  }

 private:
  Imported ReadSource(const std::string& path) {
    const Format format = FormatOf(format_, path);
    std::string malformedFile = path;
    try {
      if (format == Format::Bas) {
        malformedFile = ToUtf8(ToPath(path) / std::string(kBasIndex));
        return ReadBasFolder(FilesOf(path), encoding_, session_.page);
      }
      const std::string bytes = session_.Read(path);
      if (format == Format::VisualStudio) return ReadVisualStudioSnippets(bytes, options_, session_.page);
      std::error_code ignored;
      const std::string beside = AttachmentsBeside(path);
      const bool hasAttachments = path != "-" && std::filesystem::exists(ToPath(beside), ignored);
      const std::string attachments = hasAttachments ? session_.Read(beside) : std::string();
      return ReadVsCodeSnippets(bytes, attachments, options_, session_.page);
    } catch (const Malformed& malformed) {
      throw MalformedFile(malformedFile, malformed);
    }
  }

  /// A folder's files, or the file of that name.
  std::vector<FolderFile> FilesOf(const std::string& path) {
    std::vector<FolderFile> files;
    const std::filesystem::path named = ToPath(path);
    const auto add = [&](const std::filesystem::path& file) {
      const std::string name = ToUtf8(file.filename());
      const bool wanted = file.extension() == ".bas" || file.extension() == ".BAS" || name == kBasIndex;
      if (wanted) files.push_back({.name = name, .bytes = session_.Read(ToUtf8(file))});
    };
    std::error_code error;
    if (!std::filesystem::exists(named, error)) {
      throw Failure(ExitCode::File, ToUtf8(named) + ": does not exist");
    }
    if (!std::filesystem::is_directory(named, error)) {
      add(named);
      return files;
    }
    const std::filesystem::directory_iterator each(named, error);
    if (error) throw Failure(ExitCode::File, ToUtf8(named) + ": cannot be read");
    for (const std::filesystem::directory_entry& entry : each) {
      if (entry.is_regular_file()) add(entry.path());
    }
    return files;
  }

  std::string library_;
  std::vector<std::string> sources_;
  Format format_ = Format::ByName;
  ImportOptions options_;
  Encoding encoding_ = Encoding::AnsiUnlessMarked;  ///< Of `.bas` files.
};

}  // namespace

std::unique_ptr<Command> MakeImport(CLI::App& app, Session& session) {
  return std::make_unique<Import>(app, session);
}

}  // namespace snip
