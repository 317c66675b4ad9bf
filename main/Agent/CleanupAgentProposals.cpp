#include "Agent/CleanupAgent.h"

#include "Base/German.h"
#include "Guard/Guard.h"
#include "Runs/AgentError.h"

#include <algorithm>

/// How the list of proposals changes outside scans and runs.
namespace brellin {

namespace {

std::set<QUuid> protectedOf(const std::vector<AgentProposal> &proposals, const Guard &guard)
{
    std::set<QUuid> ids;
    for (const AgentProposal &one : proposals) {
        if (guard.isProtectedAsWhole(one.source))
            ids.insert(one.id);
    }
    return ids;
}

} // namespace

void CleanupAgent::showProposals(std::vector<AgentProposal> list)
{
    m_listed.show(std::move(list));
    // The profiles may have changed since the search began.
    dropProtected();
}

/// Removes proposals that a profile now protects. Resolves their paths on a worker.
void CleanupAgent::dropProtected()
{
    m_dropping.reset();
    if (proposals.get().empty() || profiles.get().empty())
        return;
    m_dropping = std::make_unique<Job<std::set<QUuid>>>();
    m_dropping->start(
        m_pool,
        [&locations = m_services.locations, all = profiles.get(), list = proposals.get()](JobControl &) {
            return protectedOf(list, Guard(locations, all));
        },
        [this](const std::set<QUuid> &ids) {
            if (!ids.empty())
                m_listed.remove(ids);
        });
}

Result<void> CleanupAgent::keepInstead(const QUuid &proposal)
{
    if (running.get())
        return failure(AgentError::alreadyWorking());
    const Result<void> turned = m_listed.keepInstead(proposal);
    if (!turned)
        publish(status, turned.error().message);
    return turned;
}

void CleanupAgent::discard(const std::set<QUuid> &ids, std::size_t hidden)
{
    if (running.get() || ids.empty())
        return;
    m_failure.reset();
    publish(executedRun, std::optional<QUuid>());
    m_listed.discard(ids);
    QString text =
        counted(static_cast<qint64>(discarded.get()), QStringLiteral("Vorschlag"), QStringLiteral("Vorschläge")) +
        QStringLiteral(" verworfen");
    if (hidden > 0)
        text += QStringLiteral(", davon %1 ausgeblendet").arg(german().toString(qulonglong(hidden)));
    publish(status, text + u'.');
}

void CleanupAgent::bringBack()
{
    if (running.get() || discarded.get() == 0)
        return;
    const auto back = static_cast<qint64>(discarded.get());
    m_listed.bringBack();
    dropProtected();
    publish(leftNothing, false);
    publish(status, counted(back, QStringLiteral("Vorschlag ist"), QStringLiteral("Vorschläge sind")) +
                        QStringLiteral(" wieder da."));
}

void CleanupAgent::leaveOut(const std::set<QUuid> &ids)
{
    if (running.get() || ids.empty())
        return;
    for (const AgentProposal &proposal : proposals.get())
        m_findings.duplicates -= ids.contains(proposal.id) && proposal.keptCopy ? 1 : 0;
    m_listed.remove(ids);
    const auto left = static_cast<std::int64_t>(proposals.get().size());
    if (m_analysis)
        m_analysis->proposals = proposals.get();
    publish(status, m_analysis         ? m_analysis->summary()
                    : m_duplicatesOnly ? m_findings.duplicatesSummary()
                                       : m_findings.summary(left, 0));
}

void CleanupAgent::neverPropose(const std::set<QUuid> &ids)
{
    if (running.get())
        return;
    std::vector<AgentProposal> unwanted;
    std::ranges::copy_if(proposals.get(), std::back_inserter(unwanted),
                         [&](const AgentProposal &one) { return ids.contains(one.id); });
    if (const Result<void> stored = m_lists.neverPropose(unwanted); !stored)
        return publish(status, stored.error().message);
    m_listed.remove(ids);
}

void CleanupAgent::proposeAgain(const NeverProposed &one)
{
    if (const Result<void> stored = m_lists.proposeAgain(one); !stored)
        publish(status, stored.error().message);
}

} // namespace brellin
