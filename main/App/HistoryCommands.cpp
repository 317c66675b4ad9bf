#include "Agent/AgentJson.h"
#include "Agent/CleanupAgent.h"
#include "App/AgentOperation.h"
#include "App/Command.h"
#include "App/Interruption.h"
#include "App/StoredData.h"
#include "App/UserHistoryCommand.h"
#include "Base/German.h"
#include "Runs/Recovery.h"
#include "Runs/RunKeys.h"
#include "Runs/StateFolder.h"

#include <QJsonArray>

#include <algorithm>

namespace brellin {

namespace {

QString idText(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QStringList rowOf(const JournalRun &run)
{
    return {idText(run.id), longDateTime(run.date),
            counted(static_cast<qint64>(run.steps.size()), QStringLiteral("Schritt"), QStringLiteral("Schritte")),
            run.undone ? QStringLiteral("rückgängig gemacht") : QString()};
}

/// The requested run: by a prefix of its id, or the newest that is not undone.
Result<std::optional<JournalRun>> runMeant(const CleanupAgent &agent, const std::vector<std::string> &words)
{
    const std::vector<JournalRun> &history = agent.history.get();
    if (words.empty()) {
        const auto newest = std::ranges::find(history, false, &JournalRun::undone);
        return newest == history.end() ? std::nullopt : std::optional(*newest);
    }
    const QString wanted = QString::fromStdString(words.front()).toUpper();
    std::vector<JournalRun> found;
    std::ranges::copy_if(history, std::back_inserter(found),
                         [&](const JournalRun &run) { return idText(run.id).startsWith(wanted); });
    if (wanted.isEmpty() || found.empty())
        return failure(QStringLiteral("Eine Aufräum-Aktion „%1“ gibt es im Verlauf nicht.").arg(printable(wanted)));
    if (found.size() > 1)
        return failure(QStringLiteral("Mit „%1“ beginnen mehrere Aufräum-Aktionen.").arg(wanted));
    // Steps that were not restored can be tried again.
    const auto aftermath = agent.aftermath.get().find(found.front().id);
    const bool hasRest = aftermath != agent.aftermath.get().end() && !aftermath->second.left.empty();
    if (found.front().undone && !hasRest)
        return failure(QStringLiteral("Diese Aufräum-Aktion ist schon rückgängig gemacht."));
    return std::optional(found.front());
}

QJsonObject undoAnswer(const std::optional<JournalRun> &run, const UndoOutcome &outcome, const QString &status)
{
    return {{QStringLiteral("run"), toJson(run, JsonDates::Iso)},
            {QStringLiteral("notRestored"), static_cast<qint64>(outcome.notRestored.size())},
            {QStringLiteral("notRestoredPaths"), toJson(outcome.notRestored)},
            {QStringLiteral("remarks"), QJsonArray::fromStringList(outcome.remarks)},
            {QStringLiteral("status"), status}};
}

} // namespace

ExitCode runHistoryCommand(CommandContext &context)
{
    const std::vector<std::string> &words = context.arguments.rest();
    const bool searches = !words.empty() && asciiWord(words.front()) == QStringLiteral("suchen");
    if (!words.empty() && (!searches || words.size() != 2))
        return context.refuse(QStringLiteral("So nicht: brellin verlauf [--alle | suchen NAME]"));
    if (const std::optional<ExitCode> damaged = refuseIfDamaged(context, RunKeys::history))
        return *damaged;
    {
        // Recovers interrupted runs; apart from that, showing the history stores nothing.
        const InterruptionNote interruption;
        recoverInterruptedRuns(context.services.forAgent());
        if (interruption.heard())
            return exitCodeOf(Failure::cancelled(), context.terminal);
    }
    if (searches)
        return searchHistory(context, QString::fromStdString(words[1]));
    if (context.arguments.has(QStringLiteral("alle")))
        return showWholeHistory(context);
    const CleanupAgent agent(context.services.forProposingAgent());
    const std::vector<JournalRun> &history = agent.history.get();
    if (const QString dropped = textOf(RunHistory(context.services.settings()).dropped()); !dropped.isEmpty())
        context.terminal.message(dropped);
    if (context.json()) {
        context.terminal.printJson(toJson(history, JsonDates::Iso));
        return ExitCode::Done;
    }
    if (history.empty())
        context.terminal.print(QStringLiteral("Noch nichts erledigt"));
    std::vector<QStringList> rows;
    std::ranges::transform(history, std::back_inserter(rows), rowOf);
    context.terminal.printColumns(rows, 0);
    return ExitCode::Done;
}

ExitCode runUndoCommand(CommandContext &context)
{
    if (context.arguments.rest().size() > 1)
        return context.refuse(QStringLiteral("„rueckgaengig“ nimmt höchstens eine ID."));
    if (const std::optional<ExitCode> damaged = refuseIfDamaged(context, RunKeys::history))
        return *damaged;
    const InterruptionNote interruption;
    CleanupAgent agent(context.services.forAgent());
    agent.recover();
    if (interruption.heard())
        return exitCodeOf(Failure::cancelled(), context.terminal);
    // The newest run may be the one that is damaged.
    const bool isLossy =
        std::ranges::find(agent.damaged.get(), RunKeys::history, &StoredCondition::list) != agent.damaged.get().end();
    if (isLossy && context.arguments.rest().empty())
        return context.refuse(
            QStringLiteral("Welche Aufräum-Aktion? brellin rueckgaengig ID (die IDs zeigt: brellin verlauf)"));
    const Result<std::optional<JournalRun>> meant = runMeant(agent, context.arguments.rest());
    if (!meant)
        return context.refuse(meant.error().message);
    if (!*meant) {
        // The run of another process that is at work is not in the history yet.
        if (const Result<FileLock> lock = StateFolder(context.services.forAgent().stateFolder).lockAgent(); !lock)
            return context.refuse(lock.error().message);
        const QString nothing = QStringLiteral("Es gibt nichts rückgängig zu machen.");
        if (context.json())
            context.terminal.printJson(undoAnswer({}, {}, nothing));
        else
            context.terminal.print(nothing);
        return ExitCode::Done;
    }
    agent.moves.observe(&agent, [&context](const std::vector<EntryMove> &moves) { context.follow(moves); });
    const QUuid id = (*meant)->id;
    const Result<UndoOutcome> outcome =
        waitFor<UndoOutcome>(agent, context.terminal, [&](const auto &done) { agent.undo(id, done); });
    if (!outcome) {
        const ExitCode code = exitCodeOf(outcome.error(), context.terminal);
        if (code == ExitCode::Cancelled && context.json())
            context.terminal.printJson(undoAnswer(*meant, {}, agent.status.get()));
        else if (code == ExitCode::Cancelled)
            context.terminal.message(QStringLiteral("Ein Teil ist schon zurückgelegt. Weiter: brellin rueckgaengig"));
        return code;
    }
    const auto run = std::ranges::find(agent.history.get(), id, &JournalRun::id);
    const std::optional<JournalRun> now = run == agent.history.get().end() ? std::nullopt : std::optional(*run);
    if (context.json())
        context.terminal.printJson(undoAnswer(now, *outcome, agent.status.get()));
    else
        context.terminal.print(agent.status.get());
    for (const QString &remark : outcome->remarks)
        context.terminal.message(printable(remark));
    for (const Location &place : outcome->notRestored)
        context.terminal.message(QStringLiteral("Nicht zurückgelegt: ") +
                                 printable(place, context.services.folders().home));
    if (!outcome->notRestored.empty())
        context.terminal.message(QStringLiteral("Rest noch einmal versuchen: brellin rueckgaengig ") + idText(id));
    return outcome->notRestored.empty() ? ExitCode::Done : ExitCode::Failed;
}

} // namespace brellin
