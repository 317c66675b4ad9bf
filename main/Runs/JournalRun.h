#pragma once

#include "Base/Instant.h"
#include "Runs/AgentProposal.h"

#include <vector>

namespace brellin {

/// One change that was made.
struct JournalStep {
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    Location from;              ///< before the step
    std::optional<Location> to; ///< after it; of a trashed item its place in the Trash, where that is known
    /// Of a verified move across volumes: the original's place in the Trash.
    std::optional<Location> trashedOriginal;

    bool operator==(const JournalStep &) const = default;
};

/// What was done at one time, and can be taken back as a whole.
struct JournalRun {
    QUuid id = QUuid::createUuid();
    Instant date;
    std::vector<JournalStep> steps; ///< in the order in which they were carried out
    bool undone = false;

    bool operator==(const JournalRun &) const = default;
};

} // namespace brellin
