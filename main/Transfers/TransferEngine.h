#pragma once

#include "Transfers/TransferRecord.h"
#include "Transfers/TransferServices.h"
#include "Transfers/TransferState.h"
#include "Transfers/TransferStep.h"

#include <chrono>
#include <optional>
#include <set>
#include <vector>

namespace brellin {

/// Carries out planned steps, on the calling thread (a worker) and without any state of its own.
///
/// A copy grows under a hidden name in its destination's folder, so that a name there always means the old entry or the
/// complete new one. What it replaces goes into the Trash only once the new one is complete, and comes back if the last
/// rename fails. When all are made, the volume that they were written to is flushed once. Only then is what a move across
/// volumes has copied, and nothing else, removed from the sources.
class TransferEngine {
public:
    explicit TransferEngine(const TransferServices &services) : m_services(services) {}

    using Deadline = std::chrono::steady_clock::time_point;
    /// An entry with everything in it; links are not followed. What cannot be read, or is not reached until `deadline`, counts
    /// as nothing.
    static TransferSize measure(const Location &entry, const JobControl *control = nullptr,
                                std::optional<Deadline> deadline = {});

    /// A failed step is reported by a line and the next one follows; a cancel ends the run. `sizes` are those of the steps
    /// where they are known already.
    TransferOutcome run(const std::vector<TransferStep> &steps, TransferKind kind, TransferState &state,
                        const std::vector<TransferSize> &sizes = {}) const;

    /// Copies one entry with all its metadata to a place that must not exist; on failure or cancel nothing of it stays.
    /// `copied` takes down what was copied.
    Result<CopyReport> copy(const Location &source, const Location &destination, TransferState &state,
                            CopiedEntries *copied = nullptr) const;

private:
    const TransferServices &m_services;
};

/// The first free name for `name` in `folder`: itself, "Name (2).pdf", "Name (3).pdf" …; none of `taken`.
Location uniqueURL(const std::string &name, const Location &folder, const std::set<Location> &taken = {});

} // namespace brellin
