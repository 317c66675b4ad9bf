#include "Agent/AgentKinds.h"

#include "Agent/AgentJson.h"
#include "Agent/AgentKeys.h"
#include "Agent/AiSorting.h"
#include "Agent/GuardKeys.h"
#include "Agent/RunHistory.h"
#include "Agent/RunKeys.h"

#include <algorithm>

namespace brellin {

const std::vector<StoredKind> &agentKinds()
{
    static const std::vector<StoredKind> kinds{storedKind<CleanupRule>(AgentKeys::rules),
                                               storedKind<FolderProfile>(GuardKeys::profiles),
                                               storedKind<NeverProposed>(AgentKeys::never),
                                               storedKind<Location>(AgentKeys::duplicateFolders),
                                               storedKind<JournalRun>(RunKeys::history),
                                               RunHistory::placesKind(RunKeys::createdFolders),
                                               RunHistory::placesKind(RunKeys::notRestored),
                                               RunHistory::placesKind(RunKeys::volumes),
                                               RunHistory::marksKind(),
                                               RunHistory::aftermathKind(),
                                               storedKind<QUuid>(AgentKeys::interrupted),
                                               storedKind<QString>(AgentKeys::seen),
                                               AiSorting::answersKind(),
                                               storedObjectKind(QStringLiteral("settings"))};
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
