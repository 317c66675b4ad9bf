#pragma once

#include "Agent/ProposalMemory.h"
#include "Agent/Rules/CleanupRule.h"
#include "Guard/FolderProfile.h"
#include "Places/KnownFolders.h"
#include "System/StoredCondition.h"

namespace brellin {

/// The user's lists for the agent, read together and fresh: another process may have changed them since the window was
/// opened. A list that cannot be decoded has its default value here and an entry in `damaged`.
struct AgentLists {
    std::vector<CleanupRule> rules;
    std::vector<FolderProfile> profiles;
    std::vector<NeverProposed> never;
    std::vector<Location> duplicateFolders;
    std::vector<StoredCondition> damaged;

    static AgentLists read(const UserDefaults &defaults, const KnownFolders &folders);
};

/// Fails if the agent must not act: the rules, the profiles or the never-propose list cannot be read completely. The
/// files of a lost rule would fall to the next rule, and those of a lost profile would be unprotected.
Result<void> agentMayAct(const std::vector<StoredCondition> &damaged);
/// The same for the lists as stored now.
Result<void> agentMayAct(const UserDefaults &defaults);
/// Fails if the agent must not start by itself: also if its schedule or the folders searched for duplicates are
/// unknown.
Result<void> agentMayBegin(const std::vector<StoredCondition> &damaged);
/// Fails if the folders searched for duplicates are unknown: the default ones may be those that the user removed.
Result<void> agentMaySearchDuplicates(const std::vector<StoredCondition> &damaged);

/// The folders searched for duplicates unless the user chooses others.
std::vector<Location> defaultDuplicateFolders(const KnownFolders &folders);

} // namespace brellin
