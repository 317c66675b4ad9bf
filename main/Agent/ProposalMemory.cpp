#include "Agent/ProposalMemory.h"

#include "Agent/AgentJson.h"
#include "Agent/AgentKeys.h"
#include "Disk/Digest.h"
#include "Guard/PathTexts.h"
#include "System/StoredList.h"

#include <algorithm>
#include <unordered_set>

namespace brellin {

namespace {

struct BySource {
    std::size_t operator()(const NeverProposed &one) const { return std::filesystem::hash_value(one.source); }
};

} // namespace

QString NeverProposed::text(const Location &home) const
{
    const QString from = shownFromHome(source, home) + QStringLiteral(" → ");
    if (!destination)
        return from + QStringLiteral("Papierkorb");
    if (kind == AgentProposal::Kind::Rename)
        return from + shownName(*destination);
    return from + shownFromHome(destination->parent_path(), home) + u'/';
}

QByteArray sameness(const AgentProposal &proposal)
{
    const std::string &source = proposal.source.native();
    QByteArray text = toJson(proposal.kind).toString().toLatin1();
    // NUL cannot occur in paths.
    text.append('\0').append(source.data(), std::ssize(source)).append('\0');
    if (proposal.destination)
        text.append(proposal.destination->c_str());
    return text;
}

Result<int> ProposalMemory::countNew(const std::vector<AgentProposal> &proposals)
{
    int added = 0;
    TRY(updateList<QString>(m_defaults, AgentKeys::seen, [&](const std::optional<std::vector<QString>> &stored) {
        const std::vector<QString> old = stored.value_or(std::vector<QString>());
        const std::set<QString> before(old.begin(), old.end());
        std::vector<QString> now;
        for (const AgentProposal &proposal : proposals) {
            now.push_back(QString::fromLatin1(sha256OfBytes(sameness(proposal))));
            added += before.contains(now.back()) ? 0 : 1;
        }
        return std::optional(std::move(now));
    }));
    return added;
}

std::vector<NeverProposed> ProposalMemory::never() const
{
    return storedList<NeverProposed>(m_defaults, AgentKeys::never).value_or(std::vector<NeverProposed>());
}

Result<void> ProposalMemory::addNever(const std::vector<AgentProposal> &proposals)
{
    return updateList<NeverProposed>(
        m_defaults, AgentKeys::never, [&](std::optional<std::vector<NeverProposed>> stored) {
            std::vector<NeverProposed> all = std::move(stored).value_or(std::vector<NeverProposed>());
            std::unordered_set<NeverProposed, BySource> known(all.begin(), all.end());
            for (const AgentProposal &proposal : proposals) {
                if (NeverProposed one = NeverProposed::of(proposal); known.insert(one).second)
                    all.push_back(std::move(one));
            }
            return std::optional(std::move(all));
        });
}

Result<void> ProposalMemory::removeNever(const NeverProposed &one)
{
    return updateList<NeverProposed>(m_defaults, AgentKeys::never,
                                     [&](std::optional<std::vector<NeverProposed>> stored) {
                                         if (stored)
                                             std::erase(*stored, one);
                                         return stored;
                                     });
}

} // namespace brellin
