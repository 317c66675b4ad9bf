#include "Agent/Duplicates/DuplicateSwap.h"

#include "Agent/Duplicates/DuplicateReasons.h"

#include <algorithm>

namespace brellin {

namespace {

/// Makes a proposal rely on another kept file. Keeps a doubt stated in its reason; keptSeen stays unset if it was,
/// since then the kept file must not go.
void keepFor(AgentProposal &proposal, const Location &kept, const FileState &keptSeen)
{
    const QString reason = duplicateReason(kept);
    proposal.reason = proposal.needsReview ? withDoubt(reason, Doubt::Doubtful) : reason;
    proposal.keptCopy = kept;
    if (proposal.keptSeen)
        proposal.keptSeen = keptSeen;
}

} // namespace

bool canKeepInstead(const AgentProposal &proposal)
{
    return proposal.kind == AgentProposal::Kind::Trash && !proposal.isFolder && proposal.keptCopy &&
           proposal.keptSeen && proposal.seen;
}

Result<std::vector<AgentProposal>> keepingInstead(std::vector<AgentProposal> proposals, const QUuid &proposal)
{
    const auto turned = std::ranges::find(proposals, proposal, &AgentProposal::id);
    if (turned == proposals.end() || !turned->keptCopy)
        return failure(QStringLiteral("Dieser Vorschlag ist nicht mehr in der Liste."));
    if (!canKeepInstead(*turned))
        return failure(QStringLiteral("„%1“ bleibt: Die Datei ist geschützt, gehört zu einem Projekt, oder eine Regel "
                                      "würde „%2“ später in den Papierkorb legen.")
                           .arg(shownName(*turned->keptCopy), shownName(turned->source)));
    const Location goes = *turned->keptCopy;
    const FileState goesSeen = *turned->keptSeen;
    const Location stays = turned->source;
    const FileState staysSeen = *turned->seen;
    turned->source = goes;
    turned->seen = goesSeen;
    turned->created.reset(); // of the other one
    keepFor(*turned, stays, staysSeen);
    for (AgentProposal &one : proposals) {
        if (one.id != proposal && one.keptCopy == goes)
            keepFor(one, stays, staysSeen);
    }
    std::erase_if(proposals, [&](const AgentProposal &one) { return one.id != proposal && one.source == goes; });
    return proposals;
}

} // namespace brellin
