#include "Runs/Execution.h"

#include "Runs/AgentError.h"
#include "Runs/RunJournal.h"
#include "Runs/RunTraces.h"
#include "Runs/StateFolder.h"
#include "Runs/StepLog.h"
#include "Runs/StepPerformer.h"

#include <algorithm>
#include <utility>

namespace brellin {

namespace {

/// Steps planned with one flush. A flush takes about 0.2 ms, which is negligible at this number.
constexpr std::size_t firstBatch = 256;
/// Limit for growing batches: a flush also writes all renames since the last one.
constexpr std::size_t largestBatch = 8192;

PlannedStep planOf(const AgentProposal &proposal)
{
    if (proposal.seen && proposal.created)
        return {proposal.kind, proposal.source, proposal.destination, {*proposal.seen, proposal.created}, {}};
    EntryMark entry = EntryMark::of(proposal.source).value_or(EntryMark());
    // If the entry has changed since the scan, its step will fail; plan with the scanned state, so that recovery does
    // not look for the changed one.
    if (proposal.seen && entry.state != *proposal.seen)
        entry = {*proposal.seen, {}};
    return {proposal.kind, proposal.source, proposal.destination, entry, {}};
}

/// One run at work.
class Runner {
public:
    Runner(const RunServices &services, RunJournal journal, JobControl &control)
        : m_services(services)
        , m_journal(std::move(journal))
        , m_control(control)
    {
    }

    void perform(std::span<const AgentProposal> proposals);
    ExecutionOutcome &outcome() { return m_outcome; }
    std::vector<JournalStep> &steps() { return m_steps; }
    RunHistory::Traces traces() const { return {m_createdFolders, m_marks, volumesOf(m_services.volumes, m_steps)}; }
    RunJournal &journal() { return m_journal; }

private:
    void performOne(StepPerformer &performer, const AgentProposal &proposal);
    void fail(const AgentProposal &proposal, const Failure &why)
    {
        m_outcome.failures.push_back({proposal.id, proposal.source, why});
    }

    const RunServices &m_services;
    RunJournal m_journal;
    JobControl &m_control;
    KeptEntries m_kept;
    ExecutionOutcome m_outcome;
    std::vector<JournalStep> m_steps;
    std::vector<StepMarks> m_marks; ///< marks of m_steps
    std::vector<Location> m_createdFolders;
    std::size_t m_next = 0; ///< journal number of the current step
};

void Runner::performOne(StepPerformer &performer, const AgentProposal &proposal)
{
    m_control.setDetail(shownName(proposal.source));
    StepLog log(m_journal, m_createdFolders, m_next);
    Result<StepPerformer::Performed> performed = performer.perform(proposal, log);
    if (performed) {
        m_marks.push_back(performed->marks);
        // If this line cannot be written (disk full), recovery determines the result from the disk.
        (void)(performed->inSeries ? m_journal.renamed(m_next, performed->step, m_marks.back())
                                   : m_journal.done(m_next, performed->step, m_marks.back()));
        m_steps.push_back(std::move(performed->step));
        if (performed->trouble)
            fail(proposal, *performed->trouble);
        else
            m_outcome.done.push_back(proposal.id);
    } else if (performed.error().isCancelled()) {
        (void)m_journal.failed(m_next);
        m_outcome.cancelled = true;
    } else {
        (void)m_journal.failed(m_next);
        fail(proposal, performed.error());
    }
    ++m_next;
    m_control.advance();
}

void Runner::perform(std::span<const AgentProposal> proposals)
{
    std::size_t size = firstBatch;
    while (!proposals.empty() && !m_outcome.cancelled) {
        const std::span<const AgentProposal> batch = proposals.first(std::min(size, proposals.size()));
        size = std::min(4 * size, largestBatch);
        proposals = proposals.subspan(batch.size());
        std::vector<PlannedStep> plans;
        std::ranges::transform(batch, std::back_inserter(plans), planOf);
        FreshGuard guard(m_services.locations, m_services.defaults);
        const Result<void> readable = guard.refresh();
        StepPerformer performer(m_services, guard, m_kept, &m_control);
        const Result<std::size_t> planned = readable ? m_journal.plan(plans) : failure(readable.error());
        m_next = planned.value_or(m_next);
        for (const AgentProposal &proposal : batch) {
            m_outcome.cancelled = m_outcome.cancelled || m_control.cancelled();
            if (m_outcome.cancelled)
                break;
            if (planned)
                performOne(performer, proposal);
            else
                fail(proposal, planned.error());
        }
    }
}

} // namespace

QString FailedProposal::text() const
{
    return shownName(source) + QStringLiteral(": ") + why.message;
}

QStringList ExecutionOutcome::failureTexts() const
{
    QStringList texts;
    for (const FailedProposal &failed : failures)
        texts << failed.text();
    return texts;
}

Result<ExecutionOutcome> Execution::execute(const std::vector<AgentProposal> &proposals, JobControl &control)
{
    const StateFolder state(m_services.stateFolder);
    const FileLock lock = TRY(state.lockAgent());
    TRY(m_services.mayAct());
    const Location journals = TRY(state.journals());
    // The history stores milliseconds.
    const Instant now = std::chrono::floor<std::chrono::milliseconds>(m_services.clock.now());
    const QUuid id = QUuid::createUuid();
    control.setTotal(static_cast<qint64>(proposals.size()));
    Runner runner(m_services, TRY(RunJournal::create(journals, RunJournal::Purpose::Run, id, now)), control);
    runner.perform(proposals);

    ExecutionOutcome &outcome = runner.outcome();
    if (!runner.steps().empty()) {
        const RunHistory::Traces traces = runner.traces();
        outcome.run = JournalRun{id, now, std::move(runner.steps()), false};
        addToHistory(outcome, traces);
        if (outcome.notStored) {
            (void)runner.journal().writeRenamed();
            return std::move(outcome);
        }
    }
    (void)runner.journal().discard(); // if this fails, recovery finds the run in the history and discards the journal
    return std::move(outcome);
}

void Execution::addToHistory(ExecutionOutcome &outcome, const RunHistory::Traces &traces)
{
    Result<RunHistory::Added> added = RunHistory(m_services.defaults).add(*outcome.run, traces);
    if (!added) {
        outcome.notStored = added.error();
        return;
    }
    outcome.dropped = std::move(added->dropped);
    m_stored = std::move(added->runs);
}

RunHistory::Shown Execution::history()
{
    const RunHistory history(m_services.defaults);
    return m_stored ? history.shownWith(*std::exchange(m_stored, std::nullopt)) : history.shown();
}

} // namespace brellin
