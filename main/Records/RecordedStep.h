#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Disk/EntryMark.h"
#include "Disk/EntryRights.h"
#include "Disk/FolderFacts.h"
#include "Disk/TreeMark.h"

#include <QUuid>

#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// Kinds from `NewFolder` on make entries.
enum class StepKind { Rename, BatchRename, Move, Copy, Trash, Rights, NewFolder, NewFile, Alias, Archive, Unpack };

/// A change of an entry's rights.
struct RightsStep {
    EntryRights before;
    EntryRights now;

    bool operator==(const RightsStep &) const = default;
};

/// What a step does with one entry.
struct StepEntry {
    Location from;                         ///< before the step, or the source of what it creates; empty if new
    Location to;                           ///< after the step; empty if not known in advance
    std::optional<EntryMark> was = {};     ///< the entry at `from`, before
    std::optional<EntryMark> now = {};     ///< the entry at `to`, afterwards
    std::optional<Location> replaced = {}; ///< location in the Trash of the entry that was replaced
    std::optional<EntryMark> replacedMark = {};
    std::shared_ptr<const TreeMark> content = {}; ///< content of a created folder at that time
    bool takenBack = false;
    /// Set if the content of the folder at `from` went into the one at `to`: what it takes to make that folder again.
    std::optional<FolderFacts> merged = {};
    std::optional<RightsStep> rights = {}; ///< of a change of rights

    bool operator==(const StepEntry &) const = default;
};

/// Entry for a folder that was removed after its content went into another; that one gets no mark, since it was there
/// before and never moves.
StepEntry mergedEntry(const Location &from, const Location &to, const FolderFacts &facts);

/// A file action of the user, as stored in the history.
struct RecordedStep {
    QUuid id = QUuid::createUuid();
    Instant date;
    StepKind kind = StepKind::Rename;
    std::vector<StepEntry> entries;
    std::optional<Instant> takenBack = {}; ///< when its last entry was undone

    bool operator==(const RecordedStep &) const = default;
};

/// What is known of a step before it begins.
struct StepPlan {
    StepKind kind = StepKind::Rename;
    std::vector<Location> from; ///< empty: something is made of nothing that matters
    Location to;                ///< where they go, or what is made; empty: not known
};

} // namespace brellin
