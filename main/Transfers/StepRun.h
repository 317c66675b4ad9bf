#pragma once

#include "Transfers/TransferEngine.h"
#include "Transfers/TransferLog.h"

#include <map>
#include <optional>
#include <vector>

namespace brellin {

/// One run of steps: what the engine keeps while it works.
class StepRun {
public:
    StepRun(const TransferServices &services, TransferKind kind, TransferState &state);

    /// A failure leaves the source as it was, what was there at the destination in its place, and nothing else.
    Result<TransferredEntry> carryOut(const TransferStep &step);

    /// Flushes what was written and takes away the sources of what was moved by a copy. To be called at the end.
    void settle();
    /// The same at once, where the step wants something of such a source.
    void settleBefore(const TransferStep &step);

    TransferOutcome outcome;

private:
    /// A copy whose original goes when it is on the disk.
    struct Moved {
        std::size_t number; ///< in `outcome.done`
        TransferStep step;
        CopiedEntries copied;
    };

    Result<void> checkAllowed(const TransferStep &step) const;
    Result<TransferredEntry> moveWithinVolume(const TransferStep &step);
    Result<TransferredEntry> copyInto(const TransferStep &step);
    /// Gives a complete copy its name. Gives where the entry that it replaced lies.
    Result<std::optional<Location>> place(const TransferStep &step, const Location &temporary);
    Result<WrittenVolume *> volumeFor(const Location &folder);
    Result<void> flush();
    static Result<void> checkCopyIsThere(const TransferredEntry &copy);
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
    std::map<Location, WrittenVolume> m_written; ///< by the folder that was written into
    std::vector<Moved> m_moved;
};

/// "Name: reason"
QString errorLine(const Location &entry, const Failure &why);

} // namespace brellin
