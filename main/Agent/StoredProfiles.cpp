#include "Agent/StoredProfiles.h"

#include "Agent/AgentJson.h"
#include "Agent/AgentKeys.h"

namespace brellin {

Result<std::vector<FolderProfile>> storedProfiles(const UserDefaults &defaults)
{
    return wholeList<FolderProfile>(defaults, AgentKeys::profiles, {});
}

} // namespace brellin
