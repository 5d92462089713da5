#pragma once

#include <string>

#include "cli/commands/Commands.h"

namespace snip {

/// The format that was asked for, or else the one that the path's ending or a folder tells. Throws a Failure
/// where nothing does.
Format FormatOf(Format asked, const std::string& path);

/// Where the paths of attachments lie that belong to a VS Code file.
std::string AttachmentsBeside(const std::string& path);

}  // namespace snip
