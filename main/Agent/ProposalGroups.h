#pragma once

#include "Runs/AgentProposal.h"

#include <QString>
#include <QUuid>

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace brellin {

/// How much of a group is ticked; what its own tick shows.
enum class GroupTick { None, Some, All };

/// The proposals of which the same comes: how many, how large, and how much of that is ticked.
struct ProposalGroup {
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    std::vector<QUuid> proposals; ///< in the order of the list
    std::int64_t bytes = 0;       ///< of what is known
    std::int64_t ticked = 0;
    std::int64_t tickedBytes = 0;
    bool holdsFolders = false;

    bool operator==(const ProposalGroup &) const = default;

    GroupTick tick() const;
    /// "Verschieben", "Umbenennen", "Papierkorb", "Kopieren"
    QString title() const;
    /// "12 Dateien · 3,4 MB"; where folders are among them "12 Einträge"; without a size where none is known.
    QString countText() const;
};

/// What a proposal is about, in bytes; nothing where that is not known.
std::optional<std::int64_t> bytesOf(const AgentProposal &proposal);

/// The groups of a list: Verschieben, Umbenennen, Papierkorb, Kopieren; without the empty ones.
std::vector<ProposalGroup> groupsOf(const std::vector<AgentProposal> &proposals, const std::set<QUuid> &chosen);
/// The same for some of a list.
std::vector<ProposalGroup> groupsOf(const std::vector<const AgentProposal *> &proposals, const std::set<QUuid> &chosen);

/// The line below the list: "5 von 12 ausgewählt · 3,4 MB", and, where some of them go to the Trash, that space is free only
/// once it has been emptied.
QString chosenSummary(const std::vector<ProposalGroup> &groups);

} // namespace brellin
