#pragma once

#include "Guard/FreshGuard.h"
#include "Runs/AgentProposal.h"
#include "Runs/JournalRun.h"
#include "Runs/KeptEntries.h"
#include "Runs/MoveSeries.h"
#include "Runs/Placement.h"

namespace brellin {

/// Executes single proposals. Touches only the proposal's source and destination (with the folders above the latter). A
/// failed step leaves the source as it was and no partial copy.
class StepPerformer {
public:
    /// All must outlive the performer. `kept` collects the entries that must stay because their duplicates are trashed
    /// in this run.
    StepPerformer(const RunServices &services, FreshGuard &guard, KeptEntries &kept, JobControl *control)
        : m_services(services)
        , m_guard(guard)
        , m_kept(kept)
        , m_place(services, control)
        , m_series(services, guard)
        , m_control(control)
    {
    }

    struct Performed {
        JournalStep step;
        StepMarks marks;                ///< of what the step left
        std::optional<Failure> trouble; ///< executed, but not as wanted
        bool inSeries = false;          ///< as one of many quick moves within a volume
    };
    Result<Performed> perform(const AgentProposal &proposal, StepLog &log);

private:
    Result<JournalStep> performAlone(const AgentProposal &proposal, StepLog &log);
    Result<void> checkAllowed(const AgentProposal &proposal);
    Result<void> checkTreeUnchanged(const AgentProposal &proposal) const;
    Result<void> checkKept(const AgentProposal &proposal) const;
    Result<void> checkAll(const AgentProposal &proposal);
    Result<JournalStep> act(const AgentProposal &proposal, StepLog &log);
    Result<JournalStep> copy(const AgentProposal &proposal, StepLog &log);
    Result<JournalStep> move(const AgentProposal &proposal, StepLog &log);
    Failure keptCopyFailure() const;
    Result<JournalStep> trash(const AgentProposal &proposal);
    bool isKeptApart(const Location &trashed, const Location &kept) const;

    const RunServices &m_services;
    FreshGuard &m_guard;
    KeptEntries &m_kept;
    Placement m_place;
    MoveSeries m_series;
    JobControl *m_control;
};

/// Checked before every step: the source must still match `seen`, if that is set.
Result<void> checkUnchanged(const AgentProposal &proposal);

/// Whether the user was told that the source may be needed where it is.
Guard::Review reviewOf(const AgentProposal &proposal);

} // namespace brellin
