#pragma once

#include "Base/EntryFailure.h"
#include "Base/Instant.h"
#include "Disk/EntryMark.h"
#include "Disk/TreeMark.h"
#include "Transfers/MergedFolder.h"
#include "Transfers/TransferStep.h"

#include <QStringList>
#include <QUuid>

#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// An entry that was transferred, with what undo needs.
struct TransferredEntry {
    Location src;      ///< original location
    Location dst;      ///< present location
    FileState state;   ///< of `dst` on arrival
    TransferSize size; ///< on arrival, with its content
    /// Whether the original is gone. False for copies, and if the original was kept completely or partly.
    bool moved = false;
    /// Where the entry it replaced is in the Trash.
    std::optional<Location> replaced;
    std::optional<EntryMark> replacedMark; ///< identifies that entry in the Trash
    std::optional<Instant> created;        ///< birth time of `dst`
    /// Of a copied folder: its content on arrival; null if that could not be read.
    std::shared_ptr<const TreeMark> content;

    bool operator==(const TransferredEntry &) const = default;
};

/// Result of a transfer: what arrived, and what failed.
struct TransferOutcome {
    std::vector<TransferredEntry> done;
    std::vector<MergedFolder> emptied; ///< merged folders that were removed
    EntryFailures errors;              ///< failed and incomplete steps
    QStringList notes;                 ///< metadata that could not be preserved, without duplicates
    TransferSize transferred;
    bool cancelled = false;
    /// Steps not done because the entry to be deleted permanently has changed since the user agreed.
    std::vector<TransferStep> toAskAgain;

    bool operator==(const TransferOutcome &) const = default;
    /// Appends the results of further steps.
    void add(TransferOutcome more);
};

/// A finished transfer, for display and undo. Undo moves entries back, or trashes copies, if they are still the ones
/// that arrived.
struct TransferRecord {
    QUuid id;
    TransferKind kind = TransferKind::Copy;
    Location destination;
    Instant date;
    std::vector<TransferredEntry> entries;
    std::vector<MergedFolder> emptied; ///< see TransferOutcome

    bool operator==(const TransferRecord &) const = default;
};

/// „3 Elemente nach „Dokumente“ kopiert“, for the undo list. A moved entry whose original was kept counts as copied.
QString titleOf(const TransferRecord &record);

} // namespace brellin
