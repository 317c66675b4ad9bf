#pragma once

#include "Runs/EntrySearch.h"
#include "Runs/Placement.h"

namespace brellin {

/// What there is to say of an entry that was taken back.
enum class UndoRemark {
    None,
    Changed,       ///< it came back other than the step had left it
    NewerAtTarget, ///< the original came back; what stands at the target is newer and stays there
    NewerInTrash   ///< the original came back; its copy, worked on since, is in the Trash
};

/// Takes single steps back. Each part of a step looks at the disk first, so that a step that was cut short anywhere can be
/// taken back again.
class StepReversal {
public:
    StepReversal(const RunServices &services, JobControl *control)
        : m_services(services)
        , m_place(services, control)
        , m_control(control)
    {
    }

    /// A step with what is known of it beside the history.
    struct Done {
        const JournalStep &step;
        StepMarks marks;
        /// The volumes of the run are known, and all of them are there: a Trash that is missing is no more.
        bool volumesThere = false;
    };

    /// What the journal has to know before: the entry as it is now, and where it goes. What was moved is whatever stands in
    /// its place now (saving may have made another file of it), unless it is back already. Of a copy or in the Trash another
    /// entry in its place stays.
    static PlannedStep planOf(const Done &done);

    /// Whether the plan still speaks of what is there: the entry, or what became of it in an earlier try. An entry that was
    /// saved anew, or that came to its place only after planning, has to be planned again.
    bool isCurrent(const JournalStep &step, const JournalledStep &known) const;

    /// Takes a step back; `known` is what the journal knows of an earlier try (just the plan at the first).
    Result<UndoRemark> reverse(const Done &done, const JournalledStep &known, StepLog &log);

private:
    Result<void> checkAllowed(const JournalStep &step) const;
    bool isInTrash(const Location &original, const EntryMark &entry) const;
    Result<void> trashCopy(const Location &copy, const EntryMark &entry);
    Result<UndoRemark> restoreOriginal(const Done &done, const JournalledStep &known, StepLog &log);
    Result<void> moveBack(const JournalStep &step, const JournalledStep &known, StepLog &log);
    void removeLeftover(const JournalledStep &known);

    const RunServices &m_services;
    Placement m_place;
    JobControl *m_control;
};

} // namespace brellin
