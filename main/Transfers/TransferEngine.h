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

/// Carries out planned steps on the calling worker; stateless.
///
/// A copy is written under a hidden name in the destination folder, so that a visible name is always the old entry or
/// the complete new one. An entry to be replaced is trashed only after the copy is complete, and restored if the final
/// rename fails. After all steps the volume is flushed; only then are the sources of a move across volumes removed,
/// limited to what was copied.
class TransferEngine {
public:
    explicit TransferEngine(const TransferServices &services) : m_services(services) {}

    using Deadline = std::chrono::steady_clock::time_point;
    /// Size of an entry with its content; links are not followed. Leaves out what cannot be read or is not reached by
    /// `deadline`.
    static TransferSize measure(const Location &entry, const JobControl *control = nullptr,
                                std::optional<Deadline> deadline = {});

    /// Runs the steps. A failed step adds an error line, a cancel ends the run. `sizes` are those of the steps, if
    /// known; others are measured. `merged`: folders whose content the steps transfer; of a move, those that are empty
    /// at the end are removed.
    TransferOutcome run(const std::vector<TransferStep> &steps, TransferKind kind, TransferState &state,
                        const std::vector<TransferSize> &sizes = {},
                        const std::vector<MergedFolder> &merged = {}) const;

    /// Copies an entry with all metadata to a path that must not exist; removes the copy on failure or cancel. Records
    /// what was copied in `copied`.
    Result<CopyReport> copy(const Location &source, const Location &destination, TransferState &state,
                            CopiedEntries *copied = nullptr) const;

private:
    const TransferServices &m_services;
};

/// The first free name in `folder` that is not in `taken`: "Name.pdf", "Name (2).pdf", "Name (3).pdf" …
Location uniqueURL(const std::string &name, const Location &folder, const std::set<Location> &taken = {});

} // namespace brellin
