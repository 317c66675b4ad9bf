#include "App/ProposingCommand.h"

#include "Agent/AgentJson.h"
#include "App/ProposalListing.h"
#include "App/StoredData.h"
#include "App/TypedLocation.h"
#include "Base/German.h"

#include <QRegularExpression>

#include <algorithm>

namespace brellin {

namespace {

/// The patterns of `--ohne`. Without wildcards a pattern is a name, a path or a folder.
class Exclusion {
public:
    explicit Exclusion(const std::vector<std::string> &patterns)
    {
        for (const std::string &pattern : patterns) {
            // Paths of proposals may contain symlinks as written in the rules, so match both readings.
            m_places.push_back(standardised(pattern));
            m_places.push_back(typedLocation(pattern));
            m_patterns.push_back(
                QRegularExpression::fromWildcard(folded(QString::fromStdString(pattern)), Qt::CaseSensitive));
        }
    }

    bool covers(const Location &source) const
    {
        if (m_patterns.empty())
            return false;
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

} // namespace

std::vector<OptionSpec> ProposingCommand::options(std::vector<OptionSpec> own)
{
    std::vector<OptionSpec> all{
        {QStringLiteral("ausfuehren"), {}, QStringLiteral("die angehakten Vorschläge ausführen")},
        {QStringLiteral("alle"),
         {},
         QStringLiteral("auch die Vorschläge ausführen, die nicht von selbst angehakt sind")},
        {QStringLiteral("ohne"), QStringLiteral("MUSTER"),
         QStringLiteral("Dateien auslassen, deren Name oder Pfad passt (z. B. „*.zip“; mehrfach möglich)")}};
    all.insert(all.begin(), own.begin(), own.end());
    return all;
}

ProposingCommand::ProposingCommand(CommandContext &context)
    : m_context(context)
    , m_agent(executes() ? context.services.forAgent() : context.services.forProposingAgent())
{
    m_agent.moves.observe(&m_agent, [this](const std::vector<EntryMove> &moves) { m_context.follow(moves); });
    if (executes())
        m_agent.recover();
}

bool ProposingCommand::executes() const
{
    return m_context.arguments.has(QStringLiteral("ausfuehren"));
}

std::optional<ExitCode> ProposingCommand::proposed(const std::optional<Failure> &why)
{
    if (m_interruption->heard())
        return exitCodeOf(Failure::cancelled(), m_context.terminal);
    if (why)
        return exitCodeOf(*why, m_context.terminal);
    for (const StoredCondition &damaged : m_agent.damaged.get())
        m_context.terminal.message(damageNotice(damaged));
    applyOptions();
    m_found = m_agent.status.get();
    m_notSearched = m_agent.notSearched();
    return std::nullopt;
}

/// Applies `--ohne` and `--alle` to the agent's list.
void ProposingCommand::applyOptions()
{
    const Exclusion exclusion(m_context.arguments.values(QStringLiteral("ohne")));
    const bool all = m_context.arguments.has(QStringLiteral("alle"));
    std::set<QUuid> left;
    std::set<QUuid> ticked;
    for (const AgentProposal &proposal : m_agent.proposals.get()) {
        if (exclusion.covers(proposal.source))
            left.insert(proposal.id);
        else if (proposal.preselected || all)
            ticked.insert(proposal.id);
    }
    m_agent.leaveOut(left);
    m_agent.choose(ticked);
}

/// Prints the result of the run and returns the exit code.
ExitCode ProposingCommand::report(const ExecutionOutcome &outcome) const
{
    if (!m_context.json()) {
        for (const FailedProposal &failed : outcome.failures)
            m_context.terminal.message(printable(failed.text()));
        QString line = QStringLiteral("%1 erledigt").arg(german().toString(qulonglong(outcome.done.size())));
        if (!outcome.failures.empty())
            line += QStringLiteral(" · %1 fehlgeschlagen").arg(german().toString(qulonglong(outcome.failures.size())));
        m_context.terminal.print(line + u'.');
        if (outcome.run)
            m_context.terminal.print(QStringLiteral("Zurücknehmen: brellin rueckgaengig"));
    }
    if (!outcome.dropped.empty())
        m_context.terminal.message(textOf(outcome.dropped));
    if (outcome.notStored) {
        m_context.terminal.message(
            QStringLiteral("Der Verlauf konnte nicht gespeichert werden: %1 Er wird beim nächsten Start nachgetragen.")
                .arg(outcome.notStored->message));
        return ExitCode::Failed;
    }
    if (outcome.cancelled) {
        m_context.terminal.message(Failure::cancelled().message);
        return ExitCode::Cancelled;
    }
    return outcome.failures.empty() ? ExitCode::Done : ExitCode::Failed;
}

ExitCode ProposingCommand::execute()
{
    if (m_agent.chosen.get().empty())
        return ExitCode::Done;
    if (m_interruption->heard())
        return exitCodeOf(Failure::cancelled(), m_context.terminal);
    Result<ExecutionOutcome> outcome = waitFor<ExecutionOutcome>(
        m_agent, m_context.terminal, [this](const auto &done) { m_agent.executeChosen(done); });
    if (!outcome)
        return exitCodeOf(outcome.error(), m_context.terminal);
    m_execution = *std::move(outcome);
    return report(*m_execution);
}

void ProposingCommand::addNotSearched(QJsonObject &answer) const
{
    answer[QStringLiteral("unreadable")] = static_cast<qint64>(m_notSearched.size());
    answer[QStringLiteral("unreadableFolders")] = toJson(m_notSearched);
}

ExitCode ProposingCommand::finish(const std::function<QJsonObject(const std::vector<AgentProposal> &)> &head)
{
    const std::vector<AgentProposal> proposals =
        m_context.json() ? m_agent.proposals.get() : std::vector<AgentProposal>();
    // Restore the default signals, so that Ctrl-C ends a long listing at once.
    if (!executes())
        m_interruption.reset();
    if (!m_context.json())
        printProposals(m_context.terminal, m_context.services.folders().home, m_agent, m_found);
    ExitCode code = ExitCode::Done;
    if (executes())
        code = execute();
    else if (!m_context.json() && !m_agent.chosen.get().empty())
        m_context.terminal.print(QStringLiteral("Das Angehakte ausführen: derselbe Befehl mit --ausfuehren"));
    // There is no JSON answer for a run that was not started.
    if (code == ExitCode::NotPossible || !m_context.json())
        return code;
    const std::optional<ExecutionOutcome> &outcome = m_execution;
    QJsonObject answer = head(proposals);
    answer[QStringLiteral("run")] = outcome ? toJson(outcome->run, JsonDates::Iso) : QJsonValue();
    answer[QStringLiteral("failures")] = QJsonArray::fromStringList(outcome ? outcome->failureTexts() : QStringList());
    addNotSearched(answer);
    answer[QStringLiteral("status")] = m_agent.status.get();
    m_context.terminal.printJson(answer);
    return code;
}

} // namespace brellin
