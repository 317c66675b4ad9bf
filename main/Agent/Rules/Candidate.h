#pragma once

#include "Runs/AgentProposal.h"

namespace brellin {

/// A file that a rule takes, before protection and the language model are applied.
struct Candidate {
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    Location source;
    std::optional<Location> destination;
    QString reason;
    bool automatic = false;
    bool isPackage = false;         ///< the source is a folder that is treated as one file
    bool needsAI = false;           ///< the language model still has to choose the destination
    std::optional<Location> aiBase; ///< the folder in which the model chooses a sub-folder
    FileState seen;
    // NOLINTNEXTLINE(readability-redundant-member-init): without it designated initialisers must name it
    std::optional<Instant> created = {}; ///< birth time
    /// The rule that takes the file.
    // NOLINTNEXTLINE(readability-redundant-member-init): without it designated initialisers must name it
    QUuid rule = {};

    bool operator==(const Candidate &) const = default;
};

} // namespace brellin
