#pragma once

#include "Runs/EntrySearch.h"
#include "Runs/Placement.h"

namespace brellin {

/// What to report about an entry that was restored.
enum class UndoRemark {
    None,
    Changed,       ///< restored with later changes
    NewerAtTarget, ///< original restored; the newer file at the target stays there
    NewerInTrash,  ///< original restored; its copy, changed since, is in the Trash
    CopyInTrash    ///< a copy was undone; it was changed since and is in the Trash
};

/// Undoes single steps. Every part of a step checks the disk first, so that an undo interrupted at any point can be
/// repeated.
class StepReversal {
public:
    StepReversal(const RunServices &services, JobControl *control)
        : m_services(services)
        , m_place(services, control)
        , m_control(control)
    {
    }

    /// A step and what is stored about it beside the history.
    struct Done {
        const JournalStep &step;
        StepMarks marks;
        /// The run's volumes are known and all mounted: a Trash folder that is missing has been removed.
        bool volumesThere = false;
    };

    /// The plan to journal before undoing: the entry in its present state and where it goes. For a move this is
    /// whatever is at the target now (saving may have replaced the file), unless the entry is already back. For a copy
    /// or a trashed item, a different entry at that place is left alone.
    static PlannedStep planOf(const Done &done);

    /// Whether the plan still matches the disk: the entry itself, or what an earlier attempt made of it. If not (the
    /// file was saved again, or appeared after planning), the step must be planned again.
    bool isCurrent(const JournalStep &step, const JournalledStep &known) const;

    /// Undoes a step. `known` is the journal's state from an earlier attempt, or just the plan at the first.
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
