#pragma once

#include "Base/EntryFailure.h"
#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Disk/FileActions.h"

#include <QString>

#include <cstdint>
#include <set>
#include <vector>

namespace brellin {

/// A move across volumes that was killed while it removed its source: the copy is complete, part of the source is left.
struct UnfinishedMove {
    Location log;
    Location source;
    Location copy;
    Instant since; ///< when the copy began
    /// Files and links left at the source that are the same in the copy by name, size and time.
    std::int64_t entries = 0;
    std::int64_t bytes = 0;
    /// The others, which are kept in any case.
    std::int64_t differing = 0;

    bool operator==(const UnfinishedMove &) const = default;
    /// „„Fotos“ steht vollständig in „Stick“. …“
    QString question() const;
};

/// Moves noted in logs of dead transfers whose sources exist. Nothing is compared or counted yet, so that it is
/// uncertain whether they can be finished. Blocking, but fast.
std::vector<UnfinishedMove> notedMoves(const Location &logs);

/// Compares the remaining sources of dead transfers with their copies. Leaves out moves that cannot be finished now,
/// e.g. because a volume is missing, and does not compare those with a source in `without`. Empty if cancelled.
/// Blocking.
std::vector<UnfinishedMove> unfinishedMoves(const Location &logs, const JobControl *control = nullptr,
                                            const std::set<Location> &without = {});

/// Whether `copy` and `source` correspond to copy and source of a noted move, as a whole, in part or around them, whose
/// source was being removed when a program died. Also true while that may be running, or if a log cannot be read.
bool mayBeCopyOfUnfinishedMove(const Location &source, const Location &copy, const Location &logs);

/// Whether `copy` is known to be such a copy and contains something that is missing at the source, or cannot be
/// compared. Walks both; blocking.
bool isOnlyCompleteCopy(const Location &source, const Location &copy, const Location &logs, const JobControl &control);

/// Permanently removes what is left of the source and has the same content in the copy; call only after the user
/// agreed. Returns the entries kept. After a cancel returns nothing and keeps the rest for the next start.
/// Blocking.
EntryFailures finishMove(const UnfinishedMove &move, FileActions &files, const JobControl *control = nullptr);

} // namespace brellin
