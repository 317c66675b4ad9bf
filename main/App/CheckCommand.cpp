#include "Agent/AgentJson.h"
#include "Agent/CleanupAgent.h"
#include "App/AgentOperation.h"
#include "App/Command.h"
#include "App/ProposalListing.h"

#include <QRegularExpression>

#include <algorithm>

namespace brellin {

namespace {

/// The patterns of `--ohne`: one that holds no wildcard is a name, a path or a folder.
class Exclusion {
public:
    explicit Exclusion(const std::vector<std::string> &patterns)
    {
        for (const std::string &pattern : patterns) {
            m_places.push_back(standardised(pattern));
            m_patterns.push_back(QRegularExpression::fromWildcard(folded(QString::fromStdString(pattern)),
                                                                  Qt::CaseSensitive,
                                                                  QRegularExpression::UnanchoredWildcardConversion));
            m_patterns.back().setPattern(QRegularExpression::anchoredPattern(m_patterns.back().pattern()));
        }
    }

    bool covers(const Location &source) const
    {
        const QString name = folded(shownName(source));
        const QString path = folded(shown(source));
        return std::ranges::any_of(m_places, [&](const Location &place) { return isAtOrBelow(source, place); }) ||
               std::ranges::any_of(m_patterns, [&](const QRegularExpression &pattern) {
                   return pattern.match(name).hasMatch() || pattern.match(path).hasMatch();
               });
    }

private:
    std::vector<Location> m_places;
    std::vector<QRegularExpression> m_patterns;
};

/// Takes out of the agent's list what the user leaves out, and ticks what he wants.
void applyOptions(CleanupAgent &agent, const Arguments &arguments)
{
    const Exclusion exclusion(arguments.values(QStringLiteral("ohne")));
    std::set<QUuid> left;
    std::set<QUuid> ticked;
    for (const AgentProposal &proposal : agent.proposals.get()) {
        if (exclusion.covers(proposal.source))
            left.insert(proposal.id);
        else if (proposal.preselected || arguments.has(QStringLiteral("alle")))
            ticked.insert(proposal.id);
    }
    agent.discard(left);
    agent.choose(ticked);
}

QJsonObject answerOf(const CleanupAgent &agent, const std::vector<AgentProposal> &proposals)
{
    const std::optional<ExecutionOutcome> &outcome = agent.lastExecution();
    return {{QStringLiteral("proposals"), toJson(proposals, JsonDates::Iso)},
            {QStringLiteral("checkedFiles"), static_cast<qint64>(agent.findings().checkedFiles)},
            {QStringLiteral("leftForScripts"), static_cast<qint64>(agent.findings().leftForScripts)},
            {QStringLiteral("duplicates"), static_cast<qint64>(agent.findings().duplicates)},
            {QStringLiteral("run"), outcome && outcome->run ? toJson(*outcome->run, JsonDates::Iso) : QJsonValue()},
            {QStringLiteral("failures"), QJsonArray::fromStringList(outcome ? outcome->failureTexts() : QStringList())},
            {QStringLiteral("status"), agent.status.get()}};
}

/// Says what came of executing, and how the command ends.
ExitCode reportExecution(const CleanupAgent &agent, const CommandContext &context)
{
    const ExecutionOutcome &outcome = *agent.lastExecution();
    if (!context.json()) {
        for (const AgentProposal &proposal : agent.proposals.get()) {
            const auto failed = std::ranges::find(outcome.failures, proposal.id, &FailedProposal::proposal);
            if (failed != outcome.failures.end())
                context.terminal.message(printable(failed->text()));
        }
        QString line = QStringLiteral("%1 erledigt").arg(outcome.done.size());
        if (!outcome.failures.empty())
            line += QStringLiteral(" · %1 fehlgeschlagen").arg(outcome.failures.size());
        context.terminal.print(line + u'.');
        if (outcome.run)
            context.terminal.print(QStringLiteral("Zurücknehmen: brellin rueckgaengig"));
    }
    if (outcome.notStored) {
        context.terminal.message(QStringLiteral("Der Verlauf konnte nicht gespeichert werden: ") +
                                 outcome.notStored->message +
                                 QStringLiteral(" Er wird beim nächsten Start nachgetragen."));
        return ExitCode::Failed;
    }
    if (outcome.cancelled) {
        context.terminal.message(Failure::cancelled().message);
        return ExitCode::Cancelled;
    }
    return outcome.failures.empty() ? ExitCode::Done : ExitCode::Failed;
}

} // namespace

ExitCode runCheckCommand(CommandContext &context)
{
    if (!context.arguments.rest().empty())
        return context.refuse(QStringLiteral("„pruefen“ nimmt keine Ordner: geprüft werden die Ordner deiner Regeln."));
    const bool execute = context.arguments.has(QStringLiteral("ausfuehren"));
    CleanupAgent agent(execute ? context.services.forAgent() : context.services.forProposingAgent());
    if (execute)
        agent.recover();
    waitFor(agent, context.terminal, [&] { agent.scan(CleanupAgent::ScanPurpose::ProposeOnly); });
    if (agent.lastFailure())
        return exitCodeOf(*agent.lastFailure(), context.terminal);
    applyOptions(agent, context.arguments);

    const std::vector<AgentProposal> proposals = agent.proposals.get();
    if (!context.json())
        printProposals(context.terminal, context.services.folders().home, proposals, agent);
    ExitCode code = ExitCode::Done;
    if (execute) {
        if (!agent.chosen.get().empty()) {
            waitFor(agent, context.terminal, [&] { agent.executeChosen(); });
            if (agent.lastFailure() && !agent.lastExecution())
                return exitCodeOf(*agent.lastFailure(), context.terminal);
            code = reportExecution(agent, context);
        }
        agent.noteChecked();
    } else if (!context.json() && !agent.chosen.get().empty()) {
        context.terminal.print(QStringLiteral("Das Angehakte ausführen: brellin pruefen --ausfuehren"));
    }
    if (context.json())
        context.terminal.printJson(answerOf(agent, proposals));
    return code;
}

} // namespace brellin
