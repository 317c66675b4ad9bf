#include "Agent/StoredProfiles.h"

#include "Agent/GuardKeys.h"
#include "Agent/ProfileJson.h"

namespace brellin {

Result<std::vector<FolderProfile>> storedProfiles(const UserDefaults &defaults)
{
    return wholeList<FolderProfile>(defaults, GuardKeys::profiles, {});
}

} // namespace brellin
