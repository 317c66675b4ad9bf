#pragma once

#include "Base/JobControl.h"
#include "Disk/CopiedEntries.h"
#include "Disk/FreeName.h"
#include "Runs/RunServices.h"
#include "Runs/StepLog.h"

namespace brellin {

class SeenTree;

/// How the agent puts an entry at a place: folders made on the way, the name made free, never over anything. The building
/// blocks of both carrying out and undoing.
class Placement {
public:
    Placement(const RunServices &services, JobControl *control) : m_services(services), m_control(control) {}

    /// The beginning of the hidden name under which a copy grows in its destination's folder.
    static constexpr std::string_view temporaryPrefix = copyPrefix;

    /// Renames an entry to `unique(wanted)` and gives that place. `errc::cross_device_link` where only a copy can get it
    /// there.
    Result<Location> moveWithinVolume(const Location &entry, const Location &wanted, StepLog &log);

    /// Takes an entry out of the Trash to `unique(wanted)`. `original` is where it came from.
    Result<Location> takeFromTrash(const Location &trashed, const Location &original, const Location &wanted,
                                   StepLog &log);

    /// Copies an entry to `unique(wanted)`: under a hidden name first, compared with the original, and only then under its
    /// own. `safety` says whether the copy has to be on the disk itself before anything relies on it. A copy that differs
    /// fails with `differs`; nothing of it stays.
    enum class Safety { Written, Flushed };
    struct Placed {
        Location location;
        EntryMark mark;
    };
    Result<Placed> copyTo(const Location &entry, const Location &wanted, Safety safety, const Failure &differs,
                          StepLog &log);

    /// Copies across volumes and puts the original into its Trash. Fails with everything as it was; where the original
    /// could not be trashed and is no longer what was copied, both stay and it was a copy.
    struct Moved {
        Location location;
        std::optional<Location> trashedOriginal;
    };
    Result<Moved> moveAcrossVolumes(const Location &entry, const Location &wanted, StepLog &log);

    /// Whether a rename can be expected to get an entry into the folder of `wanted`.
    bool onOneVolume(const Location &entry, const Location &wanted);

private:
    Result<void> createFolders(const Location &folder, StepLog &log);
    /// `place` with the first free name, tried again when somebody else was faster; the folders it made go again if it
    /// fails.
    Result<Location> atFreeName(const Location &wanted, StepLog &log,
                                const std::function<Result<void>(const Location &)> &place);
    /// Notes before a rename what it may leave under its target's name.
    Result<void> noteReserve(const Location &entry, const Location &free, StepLog &log) const;
    Result<EntryMark> grow(const Location &entry, const Location &temporary, Safety safety, const Failure &differs);
    Result<void> checkAsCopied(const Location &entry, const Location &copy) const;
    void removeOwnCopy(const Location &copy, const EntryMark &mark);
    /// Removes a copy that had its name already, as far as it is still what was `seen` before it was compared. Gives why its
    /// original could not go, and what stays.
    Failure takenBack(const Location &copy, const SeenTree &seen, const Failure &why);

    const RunServices &m_services;
    JobControl *m_control;
    CopiedEntries m_copied;              ///< what the last copy was made of
    std::vector<Location> m_newFolders;  ///< made for the entry at hand
    Location m_lastSource, m_lastTarget; ///< the folders last asked for, and the answer
    bool m_lastSame = false;
};

} // namespace brellin
