#pragma once

#include <memory>

#include "cli/commands/Command.h"

namespace snip {

/// Adds a command to the parser.
using MakeCommand = std::unique_ptr<Command>(CLI::App& app, Session& session);

// Each in the file of the command.
MakeCommand MakeList, MakeShow, MakeFind, MakeSearch, MakeTags, MakeCheck, MakeStats;
MakeCommand MakeAdd, MakeEdit, MakeRemove, MakeRename, MakeMove, MakeConvert;
MakeCommand MakeHistory, MakeRestore, MakeDiff, MakeMerge, MakeExport, MakeImport, MakeGitSetup;
MakeCommand MakeCompletion, MakeManual;

/// In the order of the help.
inline constexpr MakeCommand* kCommands[] = {
    MakeList,  MakeShow,   MakeFind,   MakeSearch,   MakeTags,       MakeCheck,   MakeStats,   MakeAdd,
    MakeEdit,  MakeRemove, MakeRename, MakeMove,     MakeConvert,    MakeHistory, MakeRestore, MakeDiff,
    MakeMerge, MakeExport, MakeImport, MakeGitSetup, MakeCompletion, MakeManual};

}  // namespace snip
