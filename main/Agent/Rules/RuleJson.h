#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Base/Json.h"
#include "System/StoredList.h"

/// The stored form of rules. The keys must not change: earlier and later versions read them.
namespace brellin {

template <>
struct JsonWords<ConditionKind> {
    static constexpr std::array words{
        std::pair{ConditionKind::NameContains, u"nameContains"}, std::pair{ConditionKind::ExtensionIs, u"extensionIs"},
        std::pair{ConditionKind::Category, u"category"}, std::pair{ConditionKind::OlderThanDays, u"olderThanDays"},
        std::pair{ConditionKind::LargerThanMB, u"largerThanMB"}};
};

template <>
struct JsonWords<RuleAction> {
    static constexpr std::array words{std::pair{RuleAction::Move, u"move"}, std::pair{RuleAction::Copy, u"copy"},
                                      std::pair{RuleAction::Rename, u"rename"}, std::pair{RuleAction::Trash, u"trash"},
                                      std::pair{RuleAction::AiSort, u"aiSort"}};
};

template <>
struct JsonTable<RuleCondition> {
    static constexpr std::tuple fields{field("id", &RuleCondition::id), field("kind", &RuleCondition::kind),
                                       field("value", &RuleCondition::value)};
};

template <>
struct JsonTable<CleanupRule> {
    static constexpr std::tuple fields{field("id", &CleanupRule::id),
                                       field("enabled", &CleanupRule::enabled),
                                       field("name", &CleanupRule::name),
                                       field("sourcePath", &CleanupRule::sourcePath),
                                       field("includeSubfolders", &CleanupRule::includeSubfolders),
                                       field("conditions", &CleanupRule::conditions),
                                       field("action", &CleanupRule::action),
                                       field("targetPath", &CleanupRule::targetPath),
                                       field("renamePattern", &CleanupRule::renamePattern),
                                       field("automatic", &CleanupRule::automatic)};
};

template <>
inline constexpr bool recordsStandAlone<CleanupRule> = false;
/// A rule without conditions would take every file, so one that lacks the key counts as damaged; the files of a missing
/// rule would fall to the next one.
template <>
struct DecisiveKeys<CleanupRule> {
    static JsonResult<void> check(const QJsonValue &rule);
};

} // namespace brellin
