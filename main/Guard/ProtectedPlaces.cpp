#include "Guard/ProtectedPlaces.h"

#include "Guard/FolderEntry.h"
#include "Guard/SystemLocations.h"

namespace brellin {

namespace {

/// Paths in NFC: volumes differ in how they compose characters.
std::string composedPath(const Location &location)
{
    return shown(location).normalized(QString::NormalizationForm_C).toStdString();
}

/// The location a profile entry names, wherever it is. A relative path to the project or to a folder above it means the
/// project as a whole. nullopt for an entry that was left blank.
std::optional<Location> meant(const Location &root, const QString &path)
{
    if (path.trimmed().isEmpty())
        return std::nullopt;
    const Location written = locationFromText(path);
    const Location place = standardised(root / written);
    return written.is_relative() && isAtOrBelow(root, place) ? root : place;
}

} // namespace

ProtectedPlaces::ProtectedPlaces(const std::vector<FolderProfile> &profiles)
{
    for (const FolderProfile &profile : profiles) {
        if (profile.rootPath.isEmpty())
            continue;
        const Location named = profile.root();
        const Location root = resolvedLocation(named).value_or(named);
        m_roots.emplace_back(root, profile);
        m_protections.push_back({profile.name, {}});
        addHeld(root, m_protections.size() - 1);
        for (const ProtectedEntry &entry : profile.protectedEntries) {
            m_protections.push_back({profile.name, entry.path});
            // Older versions stored blanks typed around a path.
            for (const QString &path : {entry.path, entry.path.trimmed()}) {
                for (const Location &top : {named, root}) {
                    if (const std::optional<Location> place = meant(top, path))
                        add(*place, m_protections.size() - 1);
                }
            }
        }
    }
}

void ProtectedPlaces::add(const Location &place, std::size_t number)
{
    m_paths.emplace(composedPath(place), number);
    // The entry itself and, for a symlink, its target.
    for (const Location &real : {realEntry(place), resolvedLocation(place).value_or(place)}) {
        m_paths.emplace(composedPath(real), number);
        if (const std::optional<FileIdentity> identity = identityOf(real))
            m_identities.emplace(*identity, number);
        addHeld(real, number);
    }
}

void ProtectedPlaces::addHeld(const Location &real, std::size_t number)
{
    m_held.emplace(composedPath(real), number);
    for (const FileIdentity &folder : foldersAbove(real))
        m_holders.emplace(folder, number);
}

ProtectedPlaces::Number ProtectedPlaces::at(const Location &place) const
{
    if (const auto path = m_paths.find(composedPath(place)); path != m_paths.end())
        return path->second;
    const std::optional<FileIdentity> identity = identityOf(place);
    const auto known = identity ? m_identities.find(*identity) : m_identities.end();
    return known != m_identities.end() ? Number(known->second) : std::nullopt;
}

/// Checks a folder and all its parents, caching each answer.
ProtectedPlaces::Number ProtectedPlaces::overFolder(const Location &folder) const
{
    const auto known = m_folders.find(folder.native());
    if (known != m_folders.end())
        return known->second;
    Number found = at(folder);
    if (!found && folder.has_relative_path())
        found = overFolder(folder.parent_path());
    m_folders.emplace(folder.native(), found);
    return found;
}

std::optional<Protection> ProtectedPlaces::named(Number number) const
{
    return number ? std::optional(m_protections[*number]) : std::nullopt;
}

std::optional<Protection> ProtectedPlaces::over(const Location &entry, const Location &real) const
{
    if (m_paths.empty())
        return std::nullopt;
    for (const Location &way : {real, entry}) {
        Number found = at(way);
        if (!found)
            found = overFolder(way.parent_path());
        if (found)
            return named(found);
    }
    return std::nullopt;
}

std::optional<Protection> ProtectedPlaces::of(const Location &entry, const Location &real) const
{
    if (m_held.empty())
        return std::nullopt;
    if (std::optional<Protection> above = over(entry, real))
        return above;
    const std::string path = composedPath(real);
    const auto exact = m_held.find(path);
    const auto next = exact != m_held.end() ? exact : m_held.lower_bound(path + '/');
    if (next != m_held.end() && isAtOrBelow(std::string_view(next->first), std::string_view(path)))
        return m_protections[next->second];
    const std::optional<FileIdentity> identity = identityOf(real);
    const auto holder = identity ? m_holders.find(*identity) : m_holders.end();
    return holder != m_holders.end() ? named(holder->second) : std::nullopt;
}

std::optional<FolderProfile> ProtectedPlaces::profileOf(const Location &location) const
{
    const Location named = standardised(location);
    const Location real = resolvedLocation(named).value_or(named);
    const std::pair<Location, FolderProfile> *innermost = nullptr;
    for (const auto &one : m_roots) {
        const bool deeper = innermost == nullptr || innermost->first.native().size() < one.first.native().size();
        if (deeper && isAtOrBelow(real, one.first))
            innermost = &one;
    }
    return innermost != nullptr ? std::optional(innermost->second) : std::nullopt;
}

} // namespace brellin
