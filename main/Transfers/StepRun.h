#pragma once

#include "Transfers/TransferEngine.h"
#include "Transfers/TransferLog.h"

#include <optional>
#include <vector>

namespace brellin {

/// One run of steps: what the engine keeps while it works.
class StepRun {
public:
    StepRun(const TransferServices &services, TransferKind kind, TransferState &state);

    /// A failure leaves the source as it was, what was there at the destination in its place, and nothing else.
    Result<TransferredEntry> carryOut(const TransferStep &step);

    TransferOutcome outcome;

private:
    Result<void> checkAllowed(const TransferStep &step) const;
    Result<TransferredEntry> moveWithinVolume(const TransferStep &step);
    Result<TransferredEntry> copyInto(const TransferStep &step);
    /// Gives a complete copy its name. Gives where the entry that it replaced lies.
    Result<std::optional<Location>> place(const TransferStep &step, const Location &temporary);
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
};

/// "Name: reason"
QString errorLine(const Location &entry, const Failure &why);

} // namespace brellin
