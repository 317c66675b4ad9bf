#include "Guard/ProfileJson.h"

#include "System/StoredKeys.h"

namespace brellin {

JsonResult<void> DecisiveKeys<FolderProfile>::check(const QJsonValue &profile)
{
    if (JsonResult<void> whole = requireKeys(profile, {"rootPath", "protected"}); !whole)
        return whole;
    const QJsonValue root = profile[QLatin1StringView("rootPath")];
    if (root.isString() && !locationFromText(root.toString()).is_absolute())
        return std::unexpected(
            JsonError{QStringLiteral("rootPath"), QStringLiteral("hier gehört ein ganzer Pfad hin")});
    return requireKeysOfEach(profile, "protected", {"path"});
}

} // namespace brellin
