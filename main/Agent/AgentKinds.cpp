#include "Agent/AgentKinds.h"

#include "Agent/AgentJson.h"
#include "Agent/AgentKeys.h"
#include "Agent/AiSorting.h"
#include "Agent/RunHistory.h"

#include <algorithm>

namespace brellin {

const std::vector<StoredKind> &agentKinds()
{
    static const std::vector<StoredKind> kinds{storedKind<CleanupRule>(AgentKeys::rules),
                                               storedKind<FolderProfile>(AgentKeys::profiles),
                                               storedKind<NeverProposed>(AgentKeys::never),
                                               storedKind<Location>(AgentKeys::duplicateFolders),
                                               storedKind<JournalRun>(AgentKeys::history),
                                               RunHistory::placesKind(AgentKeys::createdFolders),
                                               RunHistory::placesKind(AgentKeys::notRestored),
                                               RunHistory::placesKind(AgentKeys::volumes),
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
    static const QStringList keys{AgentKeys::history, AgentKeys::createdFolders, AgentKeys::notRestored,
                                  AgentKeys::volumes, AgentKeys::marks,          AgentKeys::aftermath,
                                  AgentKeys::seen};
    return keys;
}

const StoredKind *agentKind(const QString &key)
{
    const auto found = std::ranges::find(agentKinds(), key, &StoredKind::key);
    return found == agentKinds().end() ? nullptr : &*found;
}

} // namespace brellin
