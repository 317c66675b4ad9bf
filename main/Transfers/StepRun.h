#pragma once

#include "Transfers/Ancestors.h"
#include "Transfers/TransferEngine.h"
#include "Transfers/TransferLog.h"

#include <map>
#include <optional>
#include <vector>

namespace brellin {

/// One run of steps: what the engine keeps while it works.
class StepRun {
public:
    /// `steps`: all that are to be carried out.
    StepRun(const TransferServices &services, TransferKind kind, TransferState &state,
            const std::vector<TransferStep> &steps);

    /// A failure leaves the source as it was, what was there at the destination in its place, and nothing else.
    Result<TransferredEntry> carryOut(const TransferStep &step);

    /// Flushes what was written and takes away the sources of what was moved by a copy. To be called at the end. Cancelled
    /// meanwhile, it leaves the sources that are still there: they were copied.
    void settle();
    /// The same at once, where the step wants something of such a source.
    void settleBefore(const TransferStep &step);
    /// Whether this step, the last one, failed because the user has to be asked again.
    bool asksAgainAbout(const TransferStep &step) const;

    TransferOutcome outcome;

private:
    /// A copy whose original goes when it is on the disk.
    struct Moved {
        std::size_t number; ///< in `outcome.done`
        TransferStep step;
        CopiedEntries copied;
        Instant copyBegan;
    };

    Result<void> checkAllowed(const TransferStep &step) const;
    static Result<void> checkSourceIsThere(const TransferStep &step);
    Result<TransferredEntry> moveWithinVolume(const TransferStep &step);
    Result<TransferredEntry> copyInto(const TransferStep &step);
    /// Gives a complete copy its name. Gives where the entry that it replaced lies.
    Result<std::optional<Location>> place(const TransferStep &step, const Location &temporary);
    static Result<void> checkReplacesNoSource(const TransferStep &step, const Location &temporary);
    Result<WrittenVolume *> volumeFor(const Location &folder);
    Result<void> flush();
    /// So that a removal that is cut short is found.
    Result<void> noteRemovals();
    static Result<void> checkCopyIsThere(const TransferredEntry &copy);
    /// Puts the entry that is being replaced into the Trash and gives its place there. Where that fails and `step` allows it,
    /// removes it for good (nothing is given then), else fails with the entry untouched.
    Result<std::optional<Location>> discard(const TransferStep &step);
    Result<void> removeForGood(const TransferStep &step);
    /// Fails where what may be removed for good is not what the user allowed.
    Result<void> checkStillAllowed(const TransferStep &step);
    Failure askAgain(const TransferStep &step);
    /// Whether the whole source is gone.
    bool giveUpSource(const TransferStep &step, const CopiedEntries &copied);
    void nameKept(const std::vector<Location> &kept);
    Failure putBack(const TransferStep &step, const std::optional<Location> &trashed, Failure why);
    TransferredEntry arrived(const TransferStep &step, std::optional<Location> replaced) const;

    const TransferServices &m_services;
    const TransferEngine m_engine;
    const TransferKind m_kind;
    TransferState &m_state;
    TransferLog m_log;
    std::map<Location, std::shared_ptr<WrittenVolume>> m_written; ///< by the folder that was written into
    std::vector<Moved> m_moved;
    StayingEntries m_staying;
};

/// "Name: reason"
QString errorLine(const Location &entry, const Failure &why);

} // namespace brellin
