#include "Agent/AgentJson.h"

#include "System/StoredKeys.h"

namespace brellin {

JsonResult<void> DecisiveKeys<NeverProposed>::check(const QJsonValue &finding)
{
    if (JsonResult<void> whole = requireKeys(finding, {"kind", "source"}); !whole)
        return whole;
    const bool trashes = finding[QLatin1StringView("kind")] == toJson(AgentProposal::Kind::Trash);
    return trashes ? JsonResult<void>() : requireKeys(finding, {"destination"});
}

} // namespace brellin
