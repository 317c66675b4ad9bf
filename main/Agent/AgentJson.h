#pragma once

#include "Agent/CleanupRule.h"
#include "Agent/FolderProfile.h"
#include "Agent/JournalRun.h"
#include "Agent/ProposalMemory.h"
#include "Base/Json.h"
#include "System/StoredList.h"

/// The stored form of the agent's records: their keys are a promise to every earlier and later version.
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
struct JsonWords<AgentProposal::Kind> {
    static constexpr std::array words{
        std::pair{AgentProposal::Kind::Move, u"move"}, std::pair{AgentProposal::Kind::Copy, u"copy"},
        std::pair{AgentProposal::Kind::Rename, u"rename"}, std::pair{AgentProposal::Kind::Trash, u"trash"}};
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

template <>
struct JsonTable<ProtectedEntry> {
    static constexpr std::tuple fields{field("id", &ProtectedEntry::id), field("path", &ProtectedEntry::path),
                                       field("reason", &ProtectedEntry::reason)};
};

template <>
struct JsonTable<FolderProfile> {
    static constexpr std::tuple fields{
        field("id", &FolderProfile::id),
        field("rootPath", &FolderProfile::rootPath),
        field("name", &FolderProfile::name),
        field("protected", &FolderProfile::protectedEntries),
        field("tidyAllowed", &FolderProfile::tidyAllowed),
        field("groups", &FolderProfile::groups),
        field("archiveAfterDays", &FolderProfile::archiveAfterDays),
        field("suggestDeleteUnusedVideosDays", &FolderProfile::suggestDeleteUnusedVideosDays)};
};

template <>
inline constexpr bool recordsStandAlone<FolderProfile> = false;

template <>
struct JsonTable<AgentProposal> {
    static constexpr std::tuple fields{field("id", &AgentProposal::id),
                                       field("kind", &AgentProposal::kind),
                                       field("source", &AgentProposal::source),
                                       field("destination", &AgentProposal::destination),
                                       field("reason", &AgentProposal::reason),
                                       field("automatic", &AgentProposal::automatic),
                                       field("preselected", &AgentProposal::preselected),
                                       field("isFolder", &AgentProposal::isFolder),
                                       field("needsReview", &AgentProposal::needsReview)};
};

template <>
struct JsonTable<NeverProposed> {
    static constexpr std::tuple fields{field("kind", &NeverProposed::kind), field("source", &NeverProposed::source),
                                       field("destination", &NeverProposed::destination)};
};
template <>
inline constexpr bool recordsStandAlone<NeverProposed> = false;

template <>
struct JsonTable<JournalStep> {
    static constexpr std::tuple fields{field("kind", &JournalStep::kind), field("from", &JournalStep::from),
                                       field("to", &JournalStep::to),
                                       field("trashedOriginal", &JournalStep::trashedOriginal)};
};

template <>
struct JsonTable<JournalRun> {
    static constexpr std::tuple fields{field("id", &JournalRun::id), field("date", &JournalRun::date),
                                       field("steps", &JournalRun::steps), field("undone", &JournalRun::undone)};
};

} // namespace brellin
