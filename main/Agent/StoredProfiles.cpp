#include "Agent/StoredProfiles.h"

#include "Agent/AgentJson.h"
#include "System/StoredList.h"

namespace brellin {

Result<std::vector<FolderProfile>> storedProfiles(const UserDefaults &defaults)
{
    const QString key = QStringLiteral("agentProfiles");
    if (!defaults.json(key))
        return std::vector<FolderProfile>();
    std::optional<std::vector<FolderProfile>> profiles = storedList<FolderProfile>(defaults, key);
    if (!profiles)
        return failure(QStringLiteral("Die Schutzprofile lassen sich nicht lesen. Solange bleibt alles, wie es ist."));
    return *std::move(profiles);
}

} // namespace brellin
