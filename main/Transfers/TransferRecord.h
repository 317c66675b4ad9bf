#pragma once

#include "Base/Instant.h"
#include "Disk/EntryMark.h"
#include "Disk/TreeMark.h"
#include "Transfers/TransferStep.h"

#include <QStringList>
#include <QUuid>

#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// One entry that has arrived, with what it takes to send it back.
struct TransferredEntry {
    Location src;      ///< where it came from
    Location dst;      ///< where it is
    FileState state;   ///< of `dst` on arrival
    TransferSize size; ///< on arrival, with everything in it
    /// The original is gone: it was moved. False for a copy, and where the original had to stay (in whole or in part).
    bool moved = false;
    /// Where the entry that it replaced lies in the Trash.
    std::optional<Location> replaced;
    std::optional<EntryMark> replacedMark; ///< by which it is known there
    std::optional<Instant> created;        ///< birth of `dst`
    /// Of a copied folder: what was in it on arrival. Nothing where that could not be seen.
    std::shared_ptr<const TreeMark> content;

    bool operator==(const TransferredEntry &) const = default;
};

/// What came of a transfer: what stands in the destination now, and what did not work.
struct TransferOutcome {
    std::vector<TransferredEntry> done;
    QStringList errors; ///< "Name: reason", one line for each failed step, and for what was only done in part
    QStringList notes;  ///< what copies could not keep, each said once
    TransferSize transferred;
    bool cancelled = false;
    /// Steps that did nothing because what they were to remove for good is no longer what the user said yes to.
    std::vector<TransferStep> toAskAgain;

    bool operator==(const TransferOutcome &) const = default;
    /// Takes in what came of further steps.
    void add(TransferOutcome more);
};

/// One finished transfer of the user's, to be shown and taken back: a move by moving back, a copy by putting it into the
/// Trash, each only if the entry is still the one that arrived.
struct TransferRecord {
    QUuid id;
    TransferKind kind = TransferKind::Copy;
    Location destination;
    Instant date;
    std::vector<TransferredEntry> entries;

    bool operator==(const TransferRecord &) const = default;
};

/// „3 Elemente nach „Dokumente“ kopiert“, for a list of what can be taken back. Of a move, an entry whose original had to stay
/// counts as copied.
QString titleOf(const TransferRecord &record);

} // namespace brellin
