#include "App/UserLocations.h"

#include <algorithm>

namespace brellin {

namespace {

SystemFolders closedToTheUser(unsigned int user)
{
    const Location session = "/run/user/" + std::to_string(user);
    SystemFolders folders = SystemFolders::ofThisSystem();
    for (const Location &open : {Location("/dev/shm"), Location("/var/tmp"), session / "gvfs", session / "doc"})
        folders.allowed.push_back(open);
    folders.dotFoldersInHome = false;
    return folders;
}

} // namespace

UserLocations::UserLocations(const Location &home, unsigned int user) : m_locations(home, closedToTheUser(user))
{
    const Location named = m_locations.home();
    if (!m_locations.isAllowedText(named))
        return;
    m_homes.push_back(named);
    if (const std::optional<Location> real = resolvedLocation(named); real && *real != named)
        m_homes.push_back(*real);
}

bool UserLocations::isHomeOrHoldsIt(const Location &entry) const
{
    return std::ranges::any_of(m_homes, [&](const Location &home) { return isAtOrBelow(home, entry); });
}

bool UserLocations::isInHome(const Location &realFolder) const
{
    return std::ranges::any_of(m_homes, [&](const Location &home) { return isAtOrBelow(realFolder, home); });
}

bool UserLocations::mayChange(const Location &entry) const
{
    if (!entry.is_absolute() || !entry.has_filename())
        return false;
    // The kernel resolves ".." behind a symlink from the link's target: both readings must be harmless.
    if (!isStandardised(entry.native()) && !mayChange(standardised(entry)))
        return false;
    const std::optional<Location> folder = resolvedLocation(entry.parent_path());
    if (!folder || isHomeOrHoldsIt(entry) || isHomeOrHoldsIt(*folder / entry.filename()))
        return false;
    if (isInHome(*folder))
        return true;
    // An exception below a system folder covers its contents, but not the folder itself.
    const bool inOpenFolder = *folder == "/" || m_locations.isAllowedText(*folder);
    return inOpenFolder && m_locations.isAllowedEntry(entry);
}

} // namespace brellin
