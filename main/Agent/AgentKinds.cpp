#include "Agent/AgentKinds.h"

#include "Agent/AgentJson.h"
#include "Agent/AgentKeys.h"
#include "Agent/Model/AiSorting.h"
#include "Agent/Rules/ExampleRules.h"
#include "Guard/GuardKeys.h"
#include "Runs/DroppedRun.h"
#include "Runs/RunHistory.h"
#include "Runs/RunKeys.h"

#include <QJsonDocument>

#include <algorithm>

namespace brellin {

namespace {

StoredKind settingsKind()
{
    StoredKind kind = storedObjectKind(QStringLiteral("settings"));
    kind.fresh = QJsonDocument(freshSettings()).toJson();
    return kind;
}

} // namespace

QJsonObject freshSettings()
{
    return {{AgentKeys::rulesVersion, rulesVersion}};
}

const std::vector<StoredKind> &agentKinds()
{
    static const std::vector<StoredKind> kinds{storedKind<CleanupRule>(AgentKeys::rules),
                                               storedKind<FolderProfile>(GuardKeys::profiles),
                                               storedKind<NeverProposed>(AgentKeys::never),
                                               storedKind<Location>(AgentKeys::duplicateFolders),
                                               storedKind<JournalRun>(RunKeys::history),
                                               DroppedRun::kind(),
                                               RunHistory::placesKind(RunKeys::createdFolders),
                                               RunHistory::placesKind(RunKeys::notRestored),
                                               RunHistory::placesKind(RunKeys::volumes),
                                               RunHistory::marksKind(),
                                               RunHistory::aftermathKind(),
                                               storedKind<QUuid>(AgentKeys::interrupted),
                                               storedKind<QString>(AgentKeys::seen),
                                               AiSorting::answersKind(),
                                               settingsKind()};
    return kinds;
}

const QStringList &longAgentLists()
{
    static const QStringList keys{RunKeys::history, RunKeys::createdFolders, RunKeys::notRestored, RunKeys::volumes,
                                  RunKeys::marks,   RunKeys::aftermath,      AgentKeys::seen};
    return keys;
}

const StoredKind *agentKind(const QString &key)
{
    const auto found = std::ranges::find(agentKinds(), key, &StoredKind::key);
    return found == agentKinds().end() ? nullptr : &*found;
}

} // namespace brellin
