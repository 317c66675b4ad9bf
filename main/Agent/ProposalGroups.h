#pragma once

#include "Runs/AgentProposal.h"

#include <QString>
#include <QUuid>

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace brellin {

/// The state of a group's tick box.
enum class GroupTick { None, Some, All };

/// The proposals of one kind: how many there are, their size, and how much of it is ticked.
struct ProposalGroup {
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    std::vector<QUuid> proposals; ///< in list order
    std::int64_t bytes = 0;       ///< of proposals whose size is known
    std::int64_t ticked = 0;
    std::int64_t tickedBytes = 0;
    bool holdsFolders = false;

    bool operator==(const ProposalGroup &) const = default;

    GroupTick tick() const;
    /// "Verschieben", "Umbenennen", "Papierkorb", "Kopieren"
    QString title() const;
    /// "12 Dateien · 3,4 MB"; "12 Einträge" if it contains folders; without the size if none is known.
    QString countText() const;
};

/// The size of a proposal's source; nullopt if unknown.
std::optional<std::int64_t> bytesOf(const AgentProposal &proposal);

/// The non-empty groups of a list, in this order: Verschieben, Umbenennen, Papierkorb, Kopieren.
std::vector<ProposalGroup> groupsOf(const std::vector<AgentProposal> &proposals, const std::set<QUuid> &chosen);
/// The same for selected proposals of a list.
std::vector<ProposalGroup> groupsOf(const std::vector<const AgentProposal *> &proposals, const std::set<QUuid> &chosen);

/// The line below the list: "5 von 12 ausgewählt · 3,4 MB". If any go to the Trash, it adds that emptying it frees the
/// space.
QString chosenSummary(const std::vector<ProposalGroup> &groups);

} // namespace brellin
