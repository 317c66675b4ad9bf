#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Guard/FolderProfile.h"
#include "Guard/Guard.h"
#include "Places/KnownFolders.h"
#include "Runs/JournalRun.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brellin {

/// The folder of a rule's target that is always the same: what stands before the first placeholder. Nothing where the rule
/// puts nothing anywhere.
std::optional<Location> fixedTarget(const CleanupRule &rule, const Location &home);

/// What an analysis of one folder must leave alone, and the settings under which it works. All locations that are asked
/// about are standardised and without links; those of the user's records are brought to that form here.
class FolderProtection {
public:
    struct Sources {
        const std::vector<FolderProfile> &profiles;
        const std::vector<CleanupRule> &rules;
        const std::vector<JournalRun> &history;
        const KnownFolders &folders;
        const SystemLocations &locations; ///< outlives the protection
    };
    FolderProtection(const Sources &sources, const Location &analysed);

    /// The innermost profile that holds the analysed folder, else one with every default.
    const FolderProfile &settings() const { return m_settings; }
    bool hasProfile() const { return m_hasProfile; }
    /// Whether loose files and unused folders may be moved into collecting folders.
    bool mayTidy() const { return !m_hasProfile || m_settings.tidyAllowed; }

    /// Whether any profile protects a location.
    bool isProtected(const Location &location) const { return m_guard.isProtected(location); }
    bool isProfileRoot(const Location &folder) const;
    /// Whether a folder must stay where it is because it is, or holds, something that a profile, a rule, the system or an
    /// earlier run counts on: protected entries, profiles' roots, collecting folders, folders that rules look into or put
    /// files into, the user's standard folders, and whatever an earlier run has moved.
    bool mustStay(const Location &folder) const;
    /// Whether a location is a collecting folder or lies in one: what is there has been sorted.
    bool isCollected(const Location &location) const;
    /// Whether an earlier run has moved this very entry to where it is.
    bool wasPutHere(const Location &entry) const;

private:
    void addProfile(const FolderProfile &profile);
    void addGroups(const Location &root, const std::vector<QString> &groups);
    void addRule(const CleanupRule &rule, const Location &home);
    void addHistory(const std::vector<JournalRun> &history);
    void addStandardFolders(const KnownFolders &folders);
    void addStaying(const Location &location);
    Location resolvedInFolder(const Location &entry);

    Guard m_guard;
    FolderProfile m_settings;
    bool m_hasProfile = false;
    /// Paths in the form in which names are compared.
    std::set<std::string> m_roots;
    std::set<std::string> m_staying;
    std::set<std::string> m_collecting;
    std::set<std::string> m_putHere;
    std::map<Location, Location> m_resolvedFolders;
};

} // namespace brellin
