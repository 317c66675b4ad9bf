#pragma once

#include "Agent/ProposalMemory.h"
#include "Agent/Rules/RuleJson.h"
#include "Guard/ProfileJson.h"
#include "Runs/RunJson.h"
#include "System/StoredList.h"

/// The stored forms of the agent's own records.
namespace brellin {

template <>
struct JsonTable<NeverProposed> {
    static constexpr std::tuple fields{field("kind", &NeverProposed::kind), field("source", &NeverProposed::source),
                                       field("destination", &NeverProposed::destination)};
};
template <>
inline constexpr bool recordsStandAlone<NeverProposed> = false;
/// Without these keys the proposal would not be recognised.
template <>
struct DecisiveKeys<NeverProposed> {
    static JsonResult<void> check(const QJsonValue &finding);
};

} // namespace brellin
