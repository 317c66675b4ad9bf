#pragma once

#include "App/Arguments.h"
#include "App/ExitCode.h"
#include "App/Services.h"
#include "App/Terminal.h"
#include "Features/EntryMove.h"

#include <functional>
#include <vector>

namespace brellin {

/// What a command has access to.
struct CommandContext {
    Services &services;
    Terminal &terminal;
    const Arguments &arguments;

    bool json() const { return arguments.has(QStringLiteral("json")); }
    /// Prints why nothing was done.
    ExitCode refuse(const QString &message) const;
    /// Lets the colours of folders go along with what the command moved.
    void follow(const std::vector<EntryMove> &moves) const;
};

/// A command of the command line.
struct Command {
    QString name;
    QString usage;   ///< arguments after the name, as shown in the help
    QString summary; ///< one line
    std::vector<OptionSpec> options;
    std::function<ExitCode(CommandContext &)> run;
};

/// All commands, in the order of the help.
const std::vector<Command> &commands();

ExitCode runRulesCommand(CommandContext &context);
ExitCode runCheckCommand(CommandContext &context);
ExitCode runDuplicatesCommand(CommandContext &context);
ExitCode runAnalyzeCommand(CommandContext &context);
ExitCode runProfilesCommand(CommandContext &context);
ExitCode runReportCommand(CommandContext &context);
ExitCode runModelCommand(CommandContext &context);
ExitCode runHistoryCommand(CommandContext &context);
ExitCode runUndoCommand(CommandContext &context);
ExitCode runListFolderCommand(CommandContext &context);
ExitCode runSearchFolderCommand(CommandContext &context);
ExitCode runSizeCommand(CommandContext &context);
ExitCode runCopyCommand(CommandContext &context);
ExitCode runMoveCommand(CommandContext &context);
ExitCode runTagCommand(CommandContext &context);
ExitCode runTagsCommand(CommandContext &context);
ExitCode runTaggedCommand(CommandContext &context);
ExitCode runDataCommand(CommandContext &context);
ExitCode runQuickAccessCommand(CommandContext &context);
ExitCode runRenameCommand(CommandContext &context);
ExitCode runTrashCommand(CommandContext &context);
ExitCode runZipCommand(CommandContext &context);
ExitCode runAliasCommand(CommandContext &context);
ExitCode runRemnantsCommand(CommandContext &context);

} // namespace brellin
