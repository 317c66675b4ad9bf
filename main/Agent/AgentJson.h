#pragma once

#include "Agent/ProposalMemory.h"
#include "Agent/Rules/RuleJson.h"
#include "Guard/ProfileJson.h"
#include "Runs/RunJson.h"
#include "System/StoredList.h"

/// The stored form of all that the agent stores.
namespace brellin {

template <>
struct JsonTable<NeverProposed> {
    static constexpr std::tuple fields{field("kind", &NeverProposed::kind), field("source", &NeverProposed::source),
                                       field("destination", &NeverProposed::destination)};
};
template <>
inline constexpr bool recordsStandAlone<NeverProposed> = false;
/// Without what it says of a finding it would not be found again.
template <>
struct DecisiveKeys<NeverProposed> {
    static JsonResult<void> check(const QJsonValue &finding);
};

} // namespace brellin
