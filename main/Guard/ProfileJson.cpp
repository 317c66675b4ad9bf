#include "Guard/ProfileJson.h"

#include "System/StoredKeys.h"

namespace brellin {

JsonResult<void> DecisiveKeys<FolderProfile>::check(const QJsonValue &profile)
{
    if (JsonResult<void> whole = requireKeys(profile, {"rootPath", "protected"}); !whole)
        return whole;
    return requireKeysOfEach(profile, "protected", {"path"});
}

} // namespace brellin
