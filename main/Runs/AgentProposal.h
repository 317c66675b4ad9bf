#pragma once

#include "Base/Location.h"
#include "Disk/FileAttributes.h"
#include "Runs/TreeState.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace brellin {

/// One change the agent would make, waiting for the user's tick. Never stored.
struct AgentProposal {
    enum class Kind { Move, Copy, Rename, Trash };

    QUuid id = QUuid::createUuid();
    Kind kind = Kind::Move;
    Location source;
    std::optional<Location> destination; ///< none for the Trash
    QString reason;
    bool automatic = false;   ///< carried out without asking
    bool preselected = false; ///< ticked when shown
    bool isFolder = false;    ///< the source is a whole folder
    bool needsReview = false; ///< shown with the warning mark
    /// What the scan saw at `source`; the step fails if it is something else when its turn comes.
    std::optional<FileState> seen;
    /// The source goes only because this entry has the same content; the step fails unless that still holds.
    std::optional<Location> keptCopy;
    /// What the scan saw at `keptCopy`. Nothing: that entry must not go in the source's place.
    // NOLINTNEXTLINE(readability-redundant-member-init): without it designated initialisers must name it
    std::optional<FileState> keptSeen = {};
    /// Of a whole folder: what the scan saw in it; the step fails if that is something else.
    // NOLINTNEXTLINE(readability-redundant-member-init)
    std::optional<TreeState> treeSeen = {};

    bool operator==(const AgentProposal &) const = default;
};

} // namespace brellin
