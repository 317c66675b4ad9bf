#include "Agent/Rules/RuleJson.h"

#include "System/StoredKeys.h"

namespace brellin {

JsonResult<void> DecisiveKeys<CleanupRule>::check(const QJsonValue &rule)
{
    if (JsonResult<void> whole = requireKeys(rule, {"enabled", "sourcePath", "conditions", "action"}); !whole)
        return whole;
    return requireKeysOfEach(rule, "conditions", {"kind", "value"});
}

} // namespace brellin
