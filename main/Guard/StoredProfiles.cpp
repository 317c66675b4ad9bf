#include "Guard/StoredProfiles.h"

#include "Guard/GuardKeys.h"
#include "Guard/ProfileJson.h"

namespace brellin {

Result<std::vector<FolderProfile>> storedProfiles(const UserDefaults &defaults)
{
    return wholeList<FolderProfile>(defaults, GuardKeys::profiles, {});
}

} // namespace brellin
