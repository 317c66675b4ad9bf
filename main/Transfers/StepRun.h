#pragma once

#include "Transfers/Ancestors.h"
#include "Transfers/MergedFolder.h"
#include "Transfers/TransferEngine.h"
#include "Transfers/TransferLog.h"

#include <map>
#include <optional>
#include <vector>

namespace brellin {

/// One run of steps, with the state the engine needs meanwhile.
class StepRun {
public:
    /// `steps`: all steps of the run; `merged`: folders whose content they transfer.
    StepRun(const TransferServices &services, TransferKind kind, TransferState &state,
            const std::vector<TransferStep> &steps, const std::vector<MergedFolder> &merged = {});

    /// Carries out a step. On failure the source and the entry to be replaced are as before; if that could not be
    /// achieved, the failure says so.
    Result<TransferredEntry> carryOut(const TransferStep &step);

    /// Call at the end: flushes what was written, then removes the sources of moves that were copies. If cancelled
    /// meanwhile, keeps the remaining sources.
    void settle();
    /// Settles early if the step needs such a source.
    void settleBefore(const TransferStep &step);
    /// Of a move, removes the merged folders that are empty. Call after settle().
    void removeMerged();
    /// Whether the last step failed because the user must be asked again.
    bool asksAgainAbout(const TransferStep &step) const;

    TransferOutcome outcome;

private:
    /// A copy whose source is removed after the flush.
    struct Moved {
        std::size_t number; ///< index in `outcome.done`
        TransferStep step;
        CopiedEntries copied;
        Instant copyBegan;
    };

    Result<void> checkAllowed(const TransferStep &step) const;
    /// A step of a merge must not lead through a link that took the place of a folder.
    Result<void> checkFolders(const TransferStep &step) const;
    Result<void> removeEmpty(const MergedFolder &folder) const;
    static Result<void> checkSourceIsThere(const TransferStep &step);
    Result<TransferredEntry> moveWithinVolume(const TransferStep &step);
    Result<TransferredEntry> copyInto(const TransferStep &step);
    /// Renames a complete copy to its final name. Returns the Trash location of the entry it replaced.
    Result<std::optional<Location>> place(const TransferStep &step, const Location &temporary);
    static Result<void> checkReplacesNoSource(const TransferStep &step, const Location &temporary);
    Result<WrittenVolume *> volumeFor(const Location &folder);
    Result<void> flush();
    /// Logs the removals, so that an interrupted one is found.
    Result<void> noteRemovals();
    static Result<void> checkCopyIsThere(const TransferredEntry &copy);
    /// Moves the entry to be replaced to the Trash and returns its location there. If that fails and `step` allows it,
    /// deletes it permanently and returns none; otherwise fails and leaves it untouched.
    Result<std::optional<Location>> discard(const TransferStep &step);
    Result<void> removeForGood(const TransferStep &step);
    /// Fails if the entry to be deleted permanently has changed since the user agreed.
    Result<void> checkStillAllowed(const TransferStep &step);
    Failure askAgain(const TransferStep &step);
    /// Whether the source was removed completely.
    bool giveUpSource(const TransferStep &step, const CopiedEntries &copied);
    void nameKept(const std::vector<Location> &kept);
    Failure putBack(const TransferStep &step, const std::optional<Location> &trashed, Failure why);
    TransferredEntry arrived(const TransferStep &step, std::optional<Location> replaced) const;

    const TransferServices &m_services;
    const TransferEngine m_engine;
    const TransferKind m_kind;
    TransferState &m_state;
    TransferLog m_log;
    std::map<Location, std::shared_ptr<WrittenVolume>> m_written; ///< keyed by the folder written to
    std::vector<Moved> m_moved;
    StayingEntries m_staying;
    const std::vector<MergedFolder> m_merged;
    std::map<Location, const MergedFolder *> m_mergedAt; ///< keyed by the source
};

} // namespace brellin
