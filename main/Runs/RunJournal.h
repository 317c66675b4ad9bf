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
    std::optional<Location> to; ///< where it is wanted; its final name may get a number
    EntryMark entry;            ///< as it is before the step
    /// Undo of a move across volumes: the original waiting in the Trash.
    std::optional<EntryMark> original;

    bool operator==(const PlannedStep &) const = default;
};

/// What a journal knows of one planned step.
struct JournalledStep {
    PlannedStep plan;
    std::optional<Location> temporary; ///< a copy under way had this name
    std::optional<EntryMark> copied;   ///< that copy was complete and verified
    std::optional<JournalStep> done;   ///< the step is finished
    StepMarks marks = {};              ///< of what it left
    bool failed = false;               ///< the step is finished, and came to nothing
    /// The last name that was to be kept free for it.
    std::optional<NameReserve> reserve =
        {}; // NOLINT(readability-redundant-member-init): else initialisers must name it

    bool settled() const { return done.has_value() || failed; }
};

/// What is read back from a journal.
struct JournalContent {
    QUuid run;
    Instant date;
    std::vector<JournalledStep> steps;
    std::vector<Location> folders; ///< created, or about to be
    bool damaged = false;          ///< whole lines made no sense and were passed over
};

/// The diary of one run or one undo while it works, a file of JSON lines that its owner keeps locked. Whoever finds it
/// unlocked finds a run that was cut short.
///
/// Intended steps are written and flushed before the first of them acts; finished ones are plain appends, which a killed
/// process does not lose. A torn last line is as if it had not been written; a whole line that nobody understands is passed
/// over, and the file is then kept aside at the end.
class RunJournal {
public:
    enum class Purpose { Run, Undo };

    /// A new journal in `folder`. `errc::resource_unavailable_try_again` if one of this run is at work.
    static Result<RunJournal> create(const Location &folder, Purpose purpose, const QUuid &run, Instant date);
    /// The unlocked journal of an undo that was cut short, or a new one.
    static Result<RunJournal> createOrContinue(const Location &folder, const QUuid &run, Instant date);
    /// Takes over an existing journal; `errc::resource_unavailable_try_again` while its owner lives. One that cannot be read
    /// stays as it is, and the failure names it. Where only its head is damaged, its name tells the run.
    static Result<RunJournal> takeOver(const Location &file);
    /// All journals in `folder` for this purpose.
    static std::vector<Location> find(const Location &folder, Purpose purpose);
    /// Those of both purposes that cannot be read, by nobody's fault who lives. Blocking.
    static std::vector<UnreadLog> unread(const Location &folder);

    /// What was in the file when it was opened.
    const JournalContent &content() const { return m_content; }

    /// Writes what is about to be done, numbered on from the last planned step, and flushes it to the disk. Gives the number
    /// of the first. Fails once the journal is half as long as what is read: the rest is for what becomes of the steps.
    Result<std::size_t> plan(std::span<const PlannedStep> steps);
    /// Plans a step anew that was found to be another than it was when first planned.
    Result<void> planAgain(std::size_t step, const PlannedStep &planned);
    /// A folder that the run is about to create.
    Result<void> folder(const Location &folder);
    Result<void> copying(std::size_t step, const Location &temporary);
    Result<void> reserving(std::size_t step, const NameReserve &reserve);
    /// Flushed: the original may be given up after this.
    Result<void> copied(std::size_t step, const EntryMark &copy);
    Result<void> done(std::size_t step, const JournalStep &result, const StepMarks &marks = {});
    Result<void> failed(std::size_t step);
    Result<void> flush();

    /// Removes the file: what it says is in the history now, or nothing was done. One that was damaged is only renamed.
    Result<void> discard();
    /// Renames the file to a name under which nobody takes it for a journal: a person may want to look into it.
    Result<void> keepAside();

private:
    RunJournal(Location file, FileLock lock) : m_file(std::move(file)), m_lock(std::move(lock)) {}
    static Result<RunJournal> open(const Location &file);
    Result<void> append(const QByteArray &lines);

    Location m_file;
    FileLock m_lock;
    JournalContent m_content;
    std::size_t m_planned = 0;
    off_t m_size = 0; ///< of the file
};

} // namespace brellin
