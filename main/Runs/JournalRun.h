#pragma once

#include "Base/Instant.h"
#include "Runs/AgentProposal.h"

#include <vector>

namespace brellin {

/// One change that was made.
struct JournalStep {
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    Location from;              ///< before the step
    std::optional<Location> to; ///< after it; for a trashed item its place in the Trash, if known
    /// For a verified move across volumes: where the original lies in the Trash.
    std::optional<Location> trashedOriginal;

    bool operator==(const JournalStep &) const = default;
};

/// The changes of one execution; undone as a whole.
struct JournalRun {
    QUuid id = QUuid::createUuid();
    Instant date;
    std::vector<JournalStep> steps; ///< in order of execution
    bool undone = false;

    bool operator==(const JournalRun &) const = default;
};

} // namespace brellin
