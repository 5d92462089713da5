#include "cli/commands/ExchangeFormat.h"

#include <filesystem>

#include "cli/files/Paths.h"

namespace snip {

Format FormatOf(Format asked, const std::string& path) {
  if (asked != Format::ByName) return asked;
  const std::filesystem::path file = ToPath(path);
  std::error_code ignored;
  const std::string extension = ToUtf8(file.extension());
  if (extension == ".snippet") return Format::VisualStudio;
  if (extension == ".code-snippets" || extension == ".json") return Format::VsCode;
  const bool folder =
      path != "-" && (file.filename().empty() || std::filesystem::is_directory(file, ignored));
  if (folder || extension == ".bas") return Format::Bas;
  throw Failure(ExitCode::Usage,
                Session::NameOf(path) + ": the name does not tell the format; --format does");
}

std::string AttachmentsBeside(const std::string& path) {
  return path + ".attachments";
}

}  // namespace snip
