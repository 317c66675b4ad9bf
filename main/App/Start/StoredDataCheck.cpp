#include "App/Start/StoredDataCheck.h"

#include "Agent/AgentKinds.h"
#include "App/Remnants.h"
#include "App/StoredData.h"
#include "App/Window/Notices.h"

#include <algorithm>

namespace brellin {

namespace {

/// All lists except the agent's, which it checks itself.
std::vector<StoredKind> kindsToCheck()
{
    std::vector<StoredKind> kinds = storedKinds();
    std::erase_if(kinds, [](const StoredKind &one) { return agentKind(one.key); });
    return kinds;
}

QStringList troubles(Services &services, const JobControl &control)
{
    QStringList found;
    for (const StoredKind &kind : kindsToCheck()) {
        if (control.cancelled())
            return found;
        keepLastGood(services.settings(), kind);
        const StoredCondition condition = conditionOf(services.settings(), kind);
        if (!condition.isWhole())
            found << condition.text() + QStringLiteral(" Wie es weitergeht: brellin daten");
    }
    for (const UnreadLog &log : unreadLogs(services))
        found << log.text() + QStringLiteral(" Wie es weitergeht: brellin reste");
    return found;
}

} // namespace

StoredDataCheck::StoredDataCheck(Services &services, Notices &notices) : m_services(services), m_notices(notices) {}

void StoredDataCheck::start()
{
    m_job.start(
        *m_pool, [&services = m_services](JobControl &control) { return troubles(services, control); },
        [this](const QStringList &found) {
            for (const QString &one : found)
                m_notices.add(one);
        });
}

} // namespace brellin
