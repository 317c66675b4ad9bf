#include "Agent/UndoRun.h"

#include "Agent/RunHistory.h"
#include "Agent/RunTraces.h"
#include "Agent/StateFolder.h"
#include "Agent/StepReversal.h"

#include <algorithm>

namespace brellin {

namespace {

/// Steps announced with one flush, at first and at most: the flush then waits for all that was renamed since the last one.
constexpr std::size_t firstBatch = 256;
constexpr std::size_t largestBatch = 8192;

/// One undo at work. Step n of its journal is the n-th from the end of the run.
class Undoer {
public:
    Undoer(const AgentServices &services, const JournalRun &run, const std::vector<StepMarks> &marks,
           RunJournal journal, JobControl &control)
        : m_services(services)
        , m_run(run)
        , m_marks(marks)
        , m_journal(std::move(journal))
        , m_control(control)
        , m_reversal(services, &control)
    {
    }

    Result<UndoOutcome> undo();
    void removeFolders(const std::vector<Location> &created) const;
    RunJournal &journal() { return m_journal; }

private:
    const JournalStep &step(std::size_t number) const { return m_run.steps[m_run.steps.size() - 1 - number]; }
    PlannedStep planOf(std::size_t number) const;
    Result<void> planBatch(std::size_t first);
    void undoOne(std::size_t number);

    const AgentServices &m_services;
    const JournalRun &m_run;
    const std::vector<StepMarks> &m_marks; ///< of its steps; those of an earlier version have none
    RunJournal m_journal;
    JobControl &m_control;
    StepReversal m_reversal;
    std::vector<JournalledStep> m_known; ///< from an earlier try, then from this one's plans
    std::vector<Location> m_newFolders;  ///< above old places that had gone
    std::size_t m_batch = firstBatch;
    UndoOutcome m_outcome;
};

PlannedStep Undoer::planOf(std::size_t number) const
{
    const bool marked = m_marks.size() == m_run.steps.size();
    return StepReversal::planOf(step(number), marked ? m_marks[m_marks.size() - 1 - number] : StepMarks());
}

Result<void> Undoer::planBatch(std::size_t first)
{
    std::vector<PlannedStep> plans;
    for (std::size_t n = first; n < std::min(first + m_batch, m_run.steps.size()); ++n)
        plans.push_back(planOf(n));
    std::ignore = TRY(m_journal.plan(plans));
    m_batch = std::min(4 * m_batch, largestBatch);
    for (const PlannedStep &plan : plans)
        m_known.push_back({.plan = plan, .temporary = {}, .copied = {}, .done = {}});
    return {};
}

void Undoer::undoOne(std::size_t number)
{
    const JournalStep &one = step(number);
    m_control.setDetail(shownName(one.from));
    if (!m_reversal.isCurrent(one, m_known[number])) {
        m_known[number] = {.plan = planOf(number), .temporary = {}, .copied = {}, .done = {}};
        (void)m_journal.planAgain(number, m_known[number].plan);
    }
    StepLog log(m_journal, m_newFolders, number);
    const Result<void> reversed = m_reversal.reverse(one, m_known[number], log);
    if (reversed) {
        (void)m_journal.done(number, one);
    } else if (reversed.error().isCancelled()) {
        m_outcome.cancelled = true;
    } else {
        (void)m_journal.failed(number);
        m_outcome.notRestored.push_back(one.from);
    }
}

Result<UndoOutcome> Undoer::undo()
{
    m_known = m_journal.content().steps;
    m_known.resize(std::min(m_known.size(), m_run.steps.size()));
    for (std::size_t n = 0; n < m_run.steps.size(); ++n) {
        if (m_control.cancelled())
            m_outcome.cancelled = true;
        if (m_outcome.cancelled)
            break;
        if (n == m_known.size())
            TRY(planBatch(n));
        // What failed the first time gets another try.
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
            (void)m_services.files.removeEmptyFolder(*folder); // one that holds something by now stays
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
    // Read under the lock: another program may have undone it since it was shown.
    const std::vector<JournalRun> runs = TRY(history.readRuns());
    const auto found = std::ranges::find(runs, id, &JournalRun::id);
    if (found == runs.end() || found->undone)
        return failure(QStringLiteral("Diese Aufräum-Aktion ist schon rückgängig gemacht."));
    const JournalRun &run = *found;
    const RunHistory::Traces traces = history.traces(run.id);
    TRY(checkVolumes(m_services.volumes, traces.volumes));
    control.setTotal(static_cast<qint64>(run.steps.size()));
    Undoer undoer(m_services, run, traces.marks,
                  TRY(RunJournal::createOrContinue(journals, run.id, m_services.clock.now())), control);
    UndoOutcome outcome = TRY(undoer.undo());
    if (outcome.cancelled)
        return outcome;
    undoer.removeFolders(traces.createdFolders);
    TRY(history.markUndone(run.id, outcome.notRestored));
    (void)undoer.journal().discard();
    return outcome;
}

} // namespace brellin
