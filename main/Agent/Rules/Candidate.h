#pragma once

#include "Runs/AgentProposal.h"

namespace brellin {

/// A file that a rule has taken, before protection and the language model have had their say.
struct Candidate {
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    Location source;
    std::optional<Location> destination;
    QString reason;
    bool automatic = false;
    bool isPackage = false;         ///< the source is a folder that counts as one file
    bool needsAI = false;           ///< the destination is still to be chosen by the language model
    std::optional<Location> aiBase; ///< the folder in which it chooses a sub-folder
    FileState seen;
    /// The rule that took the file.
    // NOLINTNEXTLINE(readability-redundant-member-init): without it designated initialisers must name it
    QUuid rule = {};

    bool operator==(const Candidate &) const = default;
};

} // namespace brellin
