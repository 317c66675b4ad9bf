#pragma once

#include "Agent/ProposalMemory.h"
#include "Agent/Rules/CleanupRule.h"
#include "Guard/FolderProfile.h"
#include "Places/KnownFolders.h"
#include "System/StoredCondition.h"

namespace brellin {

/// What the user has laid down for the agent, read together and just now: another program may have changed it since the
/// window was opened. What does not decode has its default here, and stands in `damaged`.
struct AgentLists {
    std::vector<CleanupRule> rules;
    std::vector<FolderProfile> profiles;
    std::vector<NeverProposed> never;
    std::vector<Location> duplicateFolders;
    std::vector<StoredCondition> damaged;

    static AgentLists read(const UserDefaults &defaults, const KnownFolders &folders);
};

/// Why the agent must not act on what it has read: rules, profiles or the list of what is never to be proposed are not known
/// whole. A lost rule's files would fall to the next rule, those of a lost profile to the first.
Result<void> agentMayAct(const std::vector<StoredCondition> &damaged);
/// The same for what is stored now.
Result<void> agentMayAct(const UserDefaults &defaults);
/// Why it must not begin by itself: when to, or where to look for duplicates, is not known either.
Result<void> agentMayBegin(const std::vector<StoredCondition> &damaged);

/// The folders searched for duplicates until the user chooses others.
std::vector<Location> defaultDuplicateFolders(const KnownFolders &folders);

} // namespace brellin
