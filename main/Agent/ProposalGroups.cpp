#include "Agent/ProposalGroups.h"

#include "Base/German.h"

#include <algorithm>
#include <array>

namespace brellin {

using Kind = AgentProposal::Kind;

GroupTick ProposalGroup::tick() const
{
    if (ticked == 0)
        return GroupTick::None;
    return ticked == static_cast<std::int64_t>(proposals.size()) ? GroupTick::All : GroupTick::Some;
}

QString ProposalGroup::title() const
{
    switch (kind) {
    case Kind::Move:
        return QStringLiteral("Verschieben");
    case Kind::Rename:
        return QStringLiteral("Umbenennen");
    case Kind::Trash:
        return QStringLiteral("Papierkorb");
    case Kind::Copy:
        return QStringLiteral("Kopieren");
    }
    return {};
}

QString ProposalGroup::countText() const
{
    const auto count = static_cast<qint64>(proposals.size());
    const QString text = holdsFolders ? counted(count, QStringLiteral("Eintrag"), QStringLiteral("Einträge"))
                                      : counted(count, QStringLiteral("Datei"), QStringLiteral("Dateien"));
    return bytes > 0 ? text + QStringLiteral(" · ") + sizeText(bytes) : text;
}

std::optional<std::int64_t> bytesOf(const AgentProposal &proposal)
{
    // A folder's own size does not include its content.
    if (proposal.isFolder)
        return proposal.treeSeen ? std::optional(proposal.treeSeen->bytes) : std::nullopt;
    return proposal.seen ? std::optional(proposal.seen->size) : std::nullopt;
}

std::vector<ProposalGroup> groupsOf(const std::vector<AgentProposal> &proposals, const std::set<QUuid> &chosen)
{
    std::vector<const AgentProposal *> all;
    all.reserve(proposals.size());
    for (const AgentProposal &proposal : proposals)
        all.push_back(&proposal);
    return groupsOf(all, chosen);
}

std::vector<ProposalGroup> groupsOf(const std::vector<const AgentProposal *> &proposals, const std::set<QUuid> &chosen)
{
    std::vector<ProposalGroup> groups;
    for (const Kind kind : {Kind::Move, Kind::Rename, Kind::Trash, Kind::Copy})
        groups.push_back({.kind = kind, .proposals = {}});
    for (const AgentProposal *const proposal : proposals) {
        ProposalGroup &group = *std::ranges::find(groups, proposal->kind, &ProposalGroup::kind);
        const std::int64_t bytes = bytesOf(*proposal).value_or(0);
        group.proposals.push_back(proposal->id);
        group.bytes += bytes;
        group.holdsFolders = group.holdsFolders || proposal->isFolder;
        if (chosen.contains(proposal->id)) {
            ++group.ticked;
            group.tickedBytes += bytes;
        }
    }
    std::erase_if(groups, [](const ProposalGroup &group) { return group.proposals.empty(); });
    return groups;
}

QString chosenSummary(const std::vector<ProposalGroup> &groups)
{
    std::int64_t all = 0;
    std::int64_t ticked = 0;
    std::int64_t bytes = 0;
    bool trash = false;
    for (const ProposalGroup &group : groups) {
        all += static_cast<std::int64_t>(group.proposals.size());
        ticked += group.ticked;
        bytes += group.tickedBytes;
        trash = trash || (group.kind == Kind::Trash && group.ticked > 0);
    }
    QString text =
        QStringLiteral("%1 von %2 ausgewählt")
            .arg(german().toString(static_cast<qlonglong>(ticked)), german().toString(static_cast<qlonglong>(all)));
    if (bytes > 0)
        text += QStringLiteral(" · ") + sizeText(bytes);
    if (trash)
        text += QStringLiteral(" · Platz wird erst frei, wenn der Papierkorb geleert wird.");
    return text;
}

} // namespace brellin
