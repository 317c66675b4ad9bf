#pragma once

#include "Base/Result.h"
#include "Runs/JournalRun.h"
#include "Runs/NameReserve.h"
#include "Runs/StepMarks.h"
#include "System/FileLock.h"
#include "System/LogReading.h"

#include <QByteArray>

#include <optional>
#include <span>
#include <vector>

#include <sys/types.h>

namespace brellin {

/// What a run or an undo is about to do with one entry.
struct PlannedStep {
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    Location from;              ///< where the entry is now
    std::optional<Location> to; ///< where it should go; the final name may get a number
    EntryMark entry;            ///< the entry's state before the step
    /// For the undo of a move across volumes: the original in the Trash.
    std::optional<EntryMark> original;

    bool operator==(const PlannedStep &) const = default;
};

/// The state of one planned step according to the journal.
struct JournalledStep {
    PlannedStep plan;
    std::optional<Location> temporary; ///< hidden name of the copy in progress
    std::optional<EntryMark> copied;   ///< that copy is complete and verified
    std::optional<JournalStep> done;   ///< the step succeeded
    StepMarks marks = {};              ///< of what the step left
    bool failed = false;               ///< the step failed; nothing was done
    /// The last name reserved for it.
    std::optional<NameReserve> reserve =
        {}; // NOLINT(readability-redundant-member-init): else initialisers must name it

    bool settled() const { return done.has_value() || failed; }
};

/// The content of a journal file.
struct JournalContent {
    QUuid run;
    Instant date;
    std::vector<JournalledStep> steps;
    std::vector<Location> folders; ///< created, or about to be created
    bool damaged = false;          ///< invalid complete lines were skipped
};

/// Write-ahead journal of one run or one undo: a file of JSON lines, locked by its owner. An unlocked journal belongs
/// to an interrupted run.
///
/// Plans are written and flushed before their first step acts. Results are appended without a flush; they survive a
/// killed process, but not a power failure. Those of renames within one volume are written several at a time, since
/// recovery finds such an entry by its identity as well, unless somebody has saved the file anew by then. A torn last
/// line is ignored. An invalid complete line is skipped, and discard() then only renames the file.
class RunJournal {
public:
    enum class Purpose { Run, Undo };

    /// Creates a journal in `folder`. `errc::resource_unavailable_try_again` if a journal of this run is locked.
    static Result<RunJournal> create(const Location &folder, Purpose purpose, const QUuid &run, Instant date);
    /// Continues the journal of an interrupted undo, or creates one.
    static Result<RunJournal> createOrContinue(const Location &folder, const QUuid &run, Instant date);
    /// Opens an existing journal; `errc::resource_unavailable_try_again` while its owner holds the lock. An unreadable
    /// file is left unchanged, and the failure names it. If only the head is damaged, the run's id is taken from the
    /// file name.
    static Result<RunJournal> takeOver(const Location &file);
    /// All journals in `folder` for this purpose.
    static std::vector<Location> find(const Location &folder, Purpose purpose);
    /// Journals of both purposes that cannot be read. Blocking.
    static std::vector<UnreadLog> unread(const Location &folder);

    /// The content at the time the file was opened.
    const JournalContent &content() const { return m_content; }

    /// Writes and flushes steps before they are executed; returns the number of the first, counting on from the last
    /// planned step. Fails once the journal has reached half the size that can be read back: the rest is reserved for
    /// the results.
    Result<std::size_t> plan(std::span<const PlannedStep> steps);
    /// Replaces the plan of a step whose entry has changed since it was planned.
    Result<void> planAgain(std::size_t step, const PlannedStep &planned);
    /// Announces a folder that the run is about to create.
    Result<void> folder(const Location &folder);
    Result<void> copying(std::size_t step, const Location &temporary);
    Result<void> reserving(std::size_t step, const NameReserve &reserve);
    /// Flushes: after this the original may be trashed.
    Result<void> copied(std::size_t step, const EntryMark &copy);
    Result<void> done(std::size_t step, const JournalStep &result, const StepMarks &marks = {});
    /// Like `done` for a rename within one volume, but buffered: written when `mostRenamed` results have been collected or
    /// with the next other line.
    Result<void> renamed(std::size_t step, const JournalStep &result, const StepMarks &marks);
    static constexpr int mostRenamed = 64;
    /// Writes the buffered results. Call before anything that may take long, and before leaving the journal to recovery.
    Result<void> writeRenamed();
    Result<void> failed(std::size_t step);
    Result<void> flush();

    /// Removes the file once the run is in the history or nothing was done. A damaged one is only renamed, as by
    /// keepAside().
    Result<void> discard();
    /// Renames the file so that it no longer counts as a journal, but can still be inspected.
    Result<void> keepAside();

private:
    RunJournal(Location file, FileLock lock) : m_file(std::move(file)), m_lock(std::move(lock)) {}
    static Result<RunJournal> open(const Location &file);
    Result<void> append(const QByteArray &lines);
    Result<void> write(const QByteArray &lines);

    Location m_file;
    FileLock m_lock;
    JournalContent m_content;
    std::size_t m_planned = 0;
    off_t m_size = 0;     ///< file size
    QByteArray m_renamed; ///< buffered lines
    int m_renamedSteps = 0;
};

} // namespace brellin
