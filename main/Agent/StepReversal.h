#pragma once

#include "Agent/EntrySearch.h"
#include "Agent/Placement.h"

namespace brellin {

/// Takes single steps back. Each part of a step looks at the disk first, so that a step that was cut short anywhere can be
/// taken back again.
class StepReversal {
public:
    StepReversal(const AgentServices &services, JobControl *control)
        : m_services(services)
        , m_place(services, control)
        , m_control(control)
    {
    }

    /// What the journal has to know before: the entry as it is now, and where it goes. Where something else has taken its
    /// place, as it was when the step left it: then it is not found, and the other stays.
    static PlannedStep planOf(const JournalStep &step, const StepMarks &marks);

    /// Whether the plan still speaks of what is there: the entry, or what became of it in an earlier try. An entry that was
    /// saved anew, or that came to its place only after planning, has to be planned again.
    bool isCurrent(const JournalStep &step, const JournalledStep &known) const;

    /// Takes `step` back; `known` is what the journal knows of an earlier try (just the plan at the first).
    Result<void> reverse(const JournalStep &step, const JournalledStep &known, StepLog &log);

private:
    Result<void> checkAllowed(const JournalStep &step) const;
    Result<void> trashCopy(const Location &copy, const FileState &state);
    Result<void> restoreOriginal(const JournalStep &step, const JournalledStep &known, StepLog &log);
    Result<void> moveBack(const JournalStep &step, const JournalledStep &known, StepLog &log);
    void removeLeftover(const JournalledStep &known);

    const AgentServices &m_services;
    Placement m_place;
    JobControl *m_control;
};

} // namespace brellin
