#pragma once

#include "Base/FreshId.h"
#include "Base/Location.h"
#include "Disk/FileAttributes.h"
#include "Runs/TreeState.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace brellin {

/// One change proposed by the agent, waiting for the user's approval. Never stored.
struct AgentProposal {
    enum class Kind { Move, Copy, Rename, Trash };

    QUuid id = freshId();
    Kind kind = Kind::Move;
    Location source;
    std::optional<Location> destination; ///< none for the Trash
    QString reason;
    bool automatic = false;   ///< executed without asking
    bool preselected = false; ///< ticked when shown
    bool isFolder = false;    ///< the source is a whole folder
    bool needsReview = false; ///< shown with a warning mark
    /// What the scan saw at `source`; the step fails if the source differs when it is executed.
    std::optional<FileState> seen;
    /// Birth time of the source as the scan saw it, if the volume stores it. With it a step is planned without another look.
    // NOLINTNEXTLINE(readability-redundant-member-init): without it designated initialisers must name it
    std::optional<Instant> created = {};
    /// A duplicate that is the reason why the source may go; the step fails unless it still has the same content.
    std::optional<Location> keptCopy;
    /// What the scan saw at `keptCopy`. nullopt: that entry must not be trashed in place of the source.
    // NOLINTNEXTLINE(readability-redundant-member-init): without it designated initialisers must name it
    std::optional<FileState> keptSeen = {};
    /// For a whole folder: what the scan saw in it; the step fails if its content differs.
    // NOLINTNEXTLINE(readability-redundant-member-init)
    std::optional<TreeState> treeSeen = {};

    bool operator==(const AgentProposal &) const = default;
};

} // namespace brellin
