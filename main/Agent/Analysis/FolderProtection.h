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

/// The constant prefix of a rule's target: the folder before the first placeholder. nullopt if the rule has no target.
std::optional<Location> fixedTarget(const CleanupRule &rule, const Location &home);

/// What an analysis of one folder must leave alone, and its settings. Expects standardised locations without symlinks;
/// converts stored paths to that form.
class FolderProtection {
public:
    struct Sources {
        const std::vector<FolderProfile> &profiles;
        const std::vector<CleanupRule> &rules;
        const std::vector<JournalRun> &history;
        const KnownFolders &folders;
        const SystemLocations &locations; ///< must outlive this object
    };
    FolderProtection(const Sources &sources, const Location &analysed);

    /// The innermost profile that contains the analysed folder; without one, a default profile.
    const FolderProfile &settings() const { return m_settings; }
    bool hasProfile() const { return m_hasProfile; }
    /// Whether loose files and unused folders may be moved into collecting folders.
    bool mayTidy() const { return !m_hasProfile || m_settings.tidyAllowed; }

    /// Whether any profile protects the location.
    bool isProtected(const Location &location) const { return m_guard.isProtected(location); }
    bool isProfileRoot(const Location &folder) const;
    /// Whether a folder must stay where it is because it is, or contains, something relied on elsewhere: protected
    /// entries, roots of profiles, collecting folders, sources and targets of rules, the user's standard folders, or
    /// entries that an earlier run put there.
    bool mustStay(const Location &folder) const;
    /// Whether a location is a collecting folder or inside one: its contents are already sorted.
    bool isCollected(const Location &location) const;
    /// Whether an earlier run put this very entry where it is.
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
    /// Paths normalised for comparison.
    std::set<std::string> m_roots;
    std::set<std::string> m_staying;
    std::set<std::string> m_collecting;
    std::set<std::string> m_putHere;
    std::map<Location, Location> m_resolvedFolders;
};

} // namespace brellin
