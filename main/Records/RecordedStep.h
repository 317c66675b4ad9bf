#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Disk/EntryMark.h"
#include "Disk/TreeMark.h"

#include <QUuid>

#include <memory>
#include <optional>
#include <vector>

namespace brellin {

enum class StepKind { Rename, BatchRename, Move, Copy, Trash, NewFolder, NewFile, Alias, Archive, Unpack };

/// What a step does with one entry.
struct StepEntry {
    Location from;                         ///< where it was, or what it is made from; empty for what is new
    Location to;                           ///< where it is afterwards; empty while nobody can know
    std::optional<EntryMark> was = {};     ///< the entry at `from`, before
    std::optional<EntryMark> now = {};     ///< the entry at `to`, afterwards
    std::optional<Location> replaced = {}; ///< where the entry that it replaced lies in the Trash
    std::optional<EntryMark> replacedMark = {};
    std::shared_ptr<const TreeMark> content = {}; ///< of a folder that was made: what was in it then
    bool takenBack = false;

    bool operator==(const StepEntry &) const = default;
};

/// Something that the user did with files, as the history keeps it.
struct RecordedStep {
    QUuid id = QUuid::createUuid();
    Instant date;
    StepKind kind = StepKind::Rename;
    std::vector<StepEntry> entries;
    std::optional<Instant> takenBack = {}; ///< when the last of its entries was

    bool operator==(const RecordedStep &) const = default;
};

} // namespace brellin
