#include "Agent/Analysis/FolderProtection.h"

#include "Agent/Rules/RuleTargets.h"
#include "Guard/SystemLocations.h"

#include <algorithm>

namespace brellin {

namespace {

std::string key(const Location &location)
{
    return folded(shown(location)).toStdString();
}

Location resolved(const Location &location)
{
    return resolvedLocation(location).value_or(location);
}

} // namespace

std::optional<Location> fixedTarget(const CleanupRule &rule, const Location &home)
{
    if (rule.action == RuleAction::Trash || rule.action == RuleAction::Rename)
        return std::nullopt;
    QString path = rule.targetPath;
    if (const qsizetype placeholder = path.indexOf(u'{'); placeholder >= 0)
        path.truncate(path.lastIndexOf(u'/', placeholder) + 1);
    return rulePath(path, home);
}

FolderProtection::FolderProtection(const Sources &sources, const Location &analysed)
    : m_guard(sources.locations, sources.profiles)
{
    for (const FolderProfile &profile : sources.profiles)
        addProfile(profile);
    if (std::optional<FolderProfile> innermost = m_guard.profileOf(analysed)) {
        m_settings = *std::move(innermost);
        m_hasProfile = true;
    }
    addGroups(analysed, m_settings.groups);
    for (const CleanupRule &rule : sources.rules)
        addRule(rule, sources.folders.home);
    addHistory(sources.history);
    addStandardFolders(sources.folders);
}

void FolderProtection::addProfile(const FolderProfile &profile)
{
    if (profile.rootPath.isEmpty())
        return;
    const Location root = resolved(profile.root());
    m_roots.insert(key(root));
    addStaying(root);
    addGroups(root, profile.groups);
}

void FolderProtection::addGroups(const Location &root, const std::vector<QString> &groups)
{
    for (const QString &group : groups) {
        const Location folder = standardised(root / locationFromText(group));
        if (folder == root || !isAtOrBelow(folder, root))
            continue;
        addStaying(folder);
        m_collecting.insert(key(folder));
    }
}

void FolderProtection::addRule(const CleanupRule &rule, const Location &home)
{
    for (const std::optional<Location> &folder : {rulePath(rule.sourcePath, home), fixedTarget(rule, home)}) {
        if (folder)
            addStaying(resolved(*folder));
    }
}

void FolderProtection::addHistory(const std::vector<JournalRun> &history)
{
    for (const JournalRun &run : history) {
        if (run.undone)
            continue;
        for (const JournalStep &step : run.steps) {
            const bool puts = step.kind == AgentProposal::Kind::Move || step.kind == AgentProposal::Kind::Copy;
            if (!puts || !step.to)
                continue;
            const Location entry = resolvedInFolder(standardised(*step.to));
            addStaying(entry);
            m_putHere.insert(key(entry));
        }
    }
}

/// Resolves the entry's folder (cached), but not the entry itself, which may be a symlink.
Location FolderProtection::resolvedInFolder(const Location &entry)
{
    const auto [known, isNew] = m_resolvedFolders.try_emplace(entry.parent_path());
    if (isNew)
        known->second = resolved(entry.parent_path());
    return known->second / entry.filename();
}

void FolderProtection::addStandardFolders(const KnownFolders &folders)
{
    using enum StandardFolder;
    addStaying(resolved(folders.home));
    for (const StandardFolder which : {Desktop, Documents, Downloads, Movies, Music, Pictures}) {
        if (!folders.dir(which).empty())
            addStaying(resolved(folders.dir(which)));
    }
    for (const std::optional<Location> &folder : {folders.applications, folders.iCloud, folders.eigeneDateien}) {
        if (folder)
            addStaying(resolved(*folder));
    }
}

void FolderProtection::addStaying(const Location &location)
{
    m_staying.insert(key(location));
}

bool FolderProtection::isProfileRoot(const Location &folder) const
{
    return m_roots.contains(key(folder));
}

bool FolderProtection::mustStay(const Location &folder) const
{
    const std::string path = key(folder);
    if (m_staying.contains(path) || m_guard.isProtectedAsWhole(folder))
        return true;
    const auto next = m_staying.lower_bound(path + "/");
    return next != m_staying.end() && next->starts_with(path + "/");
}

bool FolderProtection::isCollected(const Location &location) const
{
    const std::string path = key(location);
    return std::ranges::any_of(m_collecting, [&](const std::string &folder) {
        return isAtOrBelow(std::string_view(path), std::string_view(folder));
    });
}

bool FolderProtection::wasPutHere(const Location &entry) const
{
    return m_putHere.contains(key(entry));
}

} // namespace brellin
