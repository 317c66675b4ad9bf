#include "Runs/UndoRun.h"

#include "Runs/ReservedName.h"
#include "Runs/RunHistory.h"
#include "Runs/RunTraces.h"
#include "Runs/StateFolder.h"
#include "Runs/StepReversal.h"

#include <algorithm>

namespace brellin {

namespace {

/// Steps planned with one flush, at first and at most: a flush also writes all renames since the last one.
constexpr std::size_t firstUndoBatch = 256;
constexpr std::size_t largestUndoBatch = 8192;

/// The remark shown for a restored step; empty if there is nothing to say.
QString textOf(UndoRemark remark, const JournalStep &step)
{
    switch (remark) {
    case UndoRemark::None:
        break;
    case UndoRemark::Changed:
        return QStringLiteral("%1: Inzwischen geändert, so kam es zurück.").arg(shownName(step.from));
    case UndoRemark::NewerAtTarget:
        return QStringLiteral("%1: Das Original kam zurück; was inzwischen als „%2“ gespeichert wurde, blieb dort.")
            .arg(shownName(step.from), shown(*step.to));
    case UndoRemark::NewerInTrash:
        return QStringLiteral("%1: Das Original kam zurück; die inzwischen geänderte Kopie liegt im Papierkorb.")
            .arg(shownName(step.from));
    case UndoRemark::CopyInTrash:
        return QStringLiteral("%1: Die Kopie wurde inzwischen geändert; sie liegt im Papierkorb.")
            .arg(shownName(*step.to));
    }
    return {};
}

/// One undo in progress. Step n of its journal is the n-th from the end of the run.
class Undoer {
public:
    Undoer(const RunServices &services, const JournalRun &run, const RunHistory::Traces &traces,
           std::vector<std::size_t> wanted, RunJournal journal, JobControl &control)
        : m_services(services)
        , m_run(run)
        , m_traces(traces)
        , m_wanted(std::move(wanted))
        , m_journal(std::move(journal))
        , m_control(control)
        , m_reversal(services, &control)
    {
    }

    Result<UndoOutcome> undo();
    void removeFolders(const std::vector<Location> &created) const;
    RunJournal &journal() { return m_journal; }

private:
    std::size_t indexOf(std::size_t number) const { return m_run.steps.size() - 1 - number; }
    StepReversal::Done done(std::size_t number) const;
    /// Whether to undo the step: all of them, or only the failed ones when these are retried.
    bool isWanted(std::size_t number) const;
    PlannedStep planOf(std::size_t number) const;
    Result<void> planBatch(std::size_t first);
    void undoOne(std::size_t number);
    void clearReservedNames();

    const RunServices &m_services;
    const JournalRun &m_run;
    const RunHistory::Traces &m_traces;
    const std::vector<std::size_t> m_wanted; ///< indices of the run's steps; empty: all
    RunJournal m_journal;
    JobControl &m_control;
    StepReversal m_reversal;
    std::vector<JournalledStep> m_known; ///< from an earlier attempt, then from this one's plans
    std::vector<Location> m_newFolders;  ///< created above original locations
    std::size_t m_batch = firstUndoBatch;
    UndoOutcome m_outcome;
};

/// Without marks for a run of an earlier version.
StepReversal::Done Undoer::done(std::size_t number) const
{
    const bool marked = m_traces.marks.size() == m_run.steps.size();
    return {m_run.steps[indexOf(number)], marked ? m_traces.marks[indexOf(number)] : StepMarks(),
            !m_traces.volumes.empty()};
}

bool Undoer::isWanted(std::size_t number) const
{
    return m_wanted.empty() || std::ranges::find(m_wanted, indexOf(number)) != m_wanted.end();
}

PlannedStep Undoer::planOf(std::size_t number) const
{
    return isWanted(number) ? StepReversal::planOf(done(number)) : PlannedStep();
}

Result<void> Undoer::planBatch(std::size_t first)
{
    std::vector<PlannedStep> plans;
    for (std::size_t n = first; n < std::min(first + m_batch, m_run.steps.size()); ++n)
        plans.push_back(planOf(n));
    std::ignore = TRY(m_journal.plan(plans));
    m_batch = std::min(4 * m_batch, largestUndoBatch);
    for (const PlannedStep &plan : plans)
        m_known.push_back({.plan = plan, .temporary = {}, .copied = {}, .done = {}});
    return {};
}

void Undoer::undoOne(std::size_t number)
{
    const StepReversal::Done undone = done(number);
    const JournalStep &one = undone.step;
    m_control.setDetail(shownName(one.from));
    if (!m_reversal.isCurrent(one, m_known[number])) {
        m_known[number] = {.plan = planOf(number), .temporary = {}, .copied = {}, .done = {}};
        (void)m_journal.planAgain(number, m_known[number].plan);
    }
    StepLog log(m_journal, m_newFolders, number);
    const Result<UndoRemark> reversed = m_reversal.reverse(undone, m_known[number], log);
    if (reversed) {
        (void)m_journal.done(number, one);
        if (const QString remark = textOf(*reversed, one); !remark.isEmpty())
            m_outcome.remarks << remark;
    } else if (reversed.error().isCancelled()) {
        m_outcome.cancelled = true;
    } else {
        (void)m_journal.failed(number);
        // The original of a copy never left.
        m_outcome.notRestored.push_back(one.kind == AgentProposal::Kind::Copy && one.to ? *one.to : one.from);
        m_outcome.left.push_back(indexOf(number));
    }
}

/// Empty files of an earlier attempt would occupy the original names.
void Undoer::clearReservedNames()
{
    for (const JournalledStep &step : m_known) {
        if (clearReservedName(m_services, step) == ReservedName::Unclear)
            m_outcome.remarks << QStringLiteral("%1: Ob die leere Datei von einem unterbrochenen Rückgängigmachen "
                                                "stammt, ließ sich nicht sicher feststellen; sie bleibt.")
                                     .arg(shownName(step.reserve->name));
    }
}

Result<UndoOutcome> Undoer::undo()
{
    m_known = m_journal.content().steps;
    m_known.resize(std::min(m_known.size(), m_run.steps.size()));
    clearReservedNames();
    for (std::size_t n = 0; n < m_run.steps.size(); ++n) {
        if (m_control.cancelled())
            m_outcome.cancelled = true;
        if (m_outcome.cancelled)
            break;
        if (n == m_known.size())
            TRY(planBatch(n));
        if (!isWanted(n))
            continue;
        // Retry what failed in an earlier attempt.
        if (!m_known[n].done)
            undoOne(n);
        m_control.advance();
    }
    return m_outcome;
}

void Undoer::removeFolders(const std::vector<Location> &created) const
{
    for (auto folder = created.rbegin(); folder != created.rend(); ++folder) {
        if (m_services.locations.isAllowedEntry(*folder))
            (void)m_services.files.removeEmptyFolder(*folder); // a folder that is not empty any more stays
    }
}

} // namespace

QString UndoOutcome::status() const
{
    if (notRestored.empty())
        return QStringLiteral("Rückgängig gemacht.");
    return QStringLiteral("Rückgängig – %1 Datei(en) konnten nicht zurückgelegt werden.").arg(notRestored.size());
}

Result<UndoOutcome> UndoRun::undo(const QUuid &id, JobControl &control)
{
    const StateFolder state(m_services.stateFolder);
    const FileLock lock = TRY(state.lockAgent());
    const Location journals = TRY(state.journals());
    RunHistory history(m_services.defaults);
    // Read under the lock: another process may have undone it meanwhile.
    const std::vector<JournalRun> runs = TRY(history.readableRuns());
    const auto found = std::ranges::find(runs, id, &JournalRun::id);
    const RunHistory::Aftermath before = history.aftermath(id);
    if (found == runs.end() || (found->undone && before.left.empty()))
        return failure(QStringLiteral("Diese Aufräum-Aktion ist schon rückgängig gemacht."));
    const JournalRun &run = *found;
    const std::vector<std::size_t> wanted = run.undone ? before.left : std::vector<std::size_t>();
    const RunHistory::Traces traces = history.traces(run.id);
    TRY(checkVolumes(m_services.volumes, traces.volumes));
    control.setTotal(static_cast<qint64>(wanted.empty() ? run.steps.size() : wanted.size()));
    Undoer undoer(m_services, run, traces, wanted,
                  TRY(RunJournal::createOrContinue(journals, run.id, m_services.clock.now())), control);
    UndoOutcome outcome = TRY(undoer.undo());
    if (outcome.cancelled)
        return outcome;
    undoer.removeFolders(traces.createdFolders);
    TRY(history.markUndone(run.id, {outcome.notRestored, outcome.left, before.remarks + outcome.remarks}));
    (void)undoer.journal().discard();
    return outcome;
}

} // namespace brellin
