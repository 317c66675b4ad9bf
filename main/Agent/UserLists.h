#pragma once

#include "Agent/AgentLists.h"
#include "Agent/Rules/RuleList.h"
#include "Base/Published.h"

#include <functional>

namespace brellin {

/// The user's lists for the agent, as published and as changed by the user: rules, profiles, folders searched for
/// duplicates, and findings that must not be proposed again.
///
/// A change is based on the list as stored, since another process may have changed it, and publishes the result. It
/// fails without a change if the list is damaged or cannot be stored. Main thread only.
class UserLists : public Model<UserLists> {
public:
    Published<std::vector<CleanupRule>> rules;
    Published<std::vector<FolderProfile>> profiles;
    Published<std::vector<Location>> duplicateFolders;
    Published<std::vector<NeverProposed>> never;

    /// Empty until `take`. Both must outlive this object.
    UserLists(UserDefaults &defaults, const KnownFolders &folders) : m_defaults(defaults), m_folders(folders) {}

    /// Publishes lists that were read.
    void take(AgentLists lists);
    /// The number of changes tried so far: lists read before one of them may be out of date.
    int changes() const { return m_changes; }

    using ChangeRules = std::function<std::vector<CleanupRule>(std::vector<CleanupRule>)>;
    using ChangeProfiles = std::function<std::vector<FolderProfile>(std::vector<FolderProfile>)>;
    /// Replaces the stored rules or profiles with the result of `change`.
    Result<void> updateRules(const ChangeRules &change);
    Result<void> updateProfiles(const ChangeProfiles &change);

    Result<void> addExampleRules();
    /// Replaces the rule with this id, or appends a new one.
    Result<void> saveRule(const CleanupRule &rule);
    /// Moves a rule to an index of the list; an index beyond the end moves it to the end.
    Result<void> moveRule(const QUuid &rule, std::size_t place);
    /// Inserts a copy behind a rule, switched off, and returns its id.
    Result<QUuid> duplicateRule(const QUuid &rule);
    /// Removes a rule and returns what `restoreRule` needs.
    Result<RemovedRule> removeRule(const QUuid &rule);
    Result<void> restoreRule(const RemovedRule &removed);

    /// Replaces the profile with this id or root, or appends a new one.
    Result<void> saveProfile(const FolderProfile &profile);
    Result<void> removeProfile(const QUuid &profile);
    Result<void> setDuplicateFolders(const std::vector<Location> &folders);

    /// Adds findings to the never-propose list.
    Result<void> neverPropose(const std::vector<AgentProposal> &unwanted);
    Result<void> proposeAgain(const NeverProposed &one);

private:
    UserDefaults &m_defaults;
    const KnownFolders &m_folders;
    int m_changes = 0;
};

} // namespace brellin
