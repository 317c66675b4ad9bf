#pragma once

#include "Base/JobControl.h"
#include "Disk/CopiedEntries.h"
#include "Disk/FreeName.h"
#include "Runs/RunServices.h"
#include "Runs/StepLog.h"

namespace brellin {

class SeenTree;

/// Puts entries in place for both execution and undo: creates missing folders, picks a free name, never overwrites.
class Placement {
public:
    Placement(const RunServices &services, JobControl *control) : m_services(services), m_control(control) {}

    /// Prefix of the hidden name under which a copy is written in the destination folder.
    static constexpr std::string_view temporaryPrefix = copyPrefix;

    /// Renames an entry to `unique(wanted)` and returns that location. `errc::cross_device_link` if it has to be copied
    /// instead.
    Result<Location> moveWithinVolume(const Location &entry, const Location &wanted, StepLog &log);

    /// Restores an entry from the Trash to `unique(wanted)`. `original` is the location it was trashed from.
    Result<Location> takeFromTrash(const Location &trashed, const Location &original, const Location &wanted,
                                   StepLog &log);

    /// Copies an entry to `unique(wanted)`: writes it under a hidden name, compares it with the original and then
    /// renames it. `safety` says whether the copy must be flushed to the disk. A copy that differs is removed and fails
    /// with `differs`.
    enum class Safety { Written, Flushed };
    struct Placed {
        Location location;
        EntryMark mark;
    };
    Result<Placed> copyTo(const Location &entry, const Location &wanted, Safety safety, const Failure &differs,
                          StepLog &log);

    /// Copies to another volume and trashes the original. On failure everything is as before, with one exception: if
    /// the original could not be trashed and no longer equals the copy, both stay and the result is a plain copy.
    struct Moved {
        Location location;
        std::optional<Location> trashedOriginal;
    };
    Result<Moved> moveAcrossVolumes(const Location &entry, const Location &wanted, StepLog &log);

    /// Whether a rename into the folder of `wanted` is likely to work.
    bool onOneVolume(const Location &entry, const Location &wanted);

private:
    Result<void> createFolders(const Location &folder, StepLog &log);
    /// Calls `place` with a free name, again with another one if that was taken meanwhile. On failure removes the
    /// folders created for it.
    Result<Location> atFreeName(const Location &wanted, StepLog &log,
                                const std::function<Result<void>(const Location &)> &place);
    /// Journals, before a rename, the empty file it may leave under the target name.
    Result<void> noteReserve(const Location &entry, const Location &free, StepLog &log) const;
    Result<EntryMark> grow(const Location &entry, const Location &temporary, Safety safety, const Failure &differs);
    Result<void> checkAsCopied(const Location &entry, const Location &copy) const;
    void removeOwnCopy(const Location &copy, const EntryMark &mark);
    /// Removes a verified copy under its final name, as far as it still equals `seen`. Returns the failure `why`,
    /// extended by what could not be removed.
    Failure takenBack(const Location &copy, const SeenTree &seen, const Failure &why);

    const RunServices &m_services;
    JobControl *m_control;
    CopiedEntries m_copied;              ///< what the last copy was made from
    std::vector<Location> m_newFolders;  ///< created for the current entry
    Location m_lastSource, m_lastTarget; ///< cached arguments and result of onOneVolume()
    bool m_lastSame = false;
};

} // namespace brellin
