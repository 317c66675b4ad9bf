#include "Guard/Guard.h"

namespace brellin {

namespace {

Failure systemLocation()
{
    return {SystemLocations::message(), std::make_error_code(std::errc::operation_not_permitted)};
}

Failure protectedBy(const Protection &why)
{
    const QString text =
        why.entry.isEmpty()
            ? QStringLiteral("Enthält das geschützte Projekt „%1“ und bleibt, wie es ist.").arg(why.profile)
            : QStringLiteral("Im Projekt „%1“ geschützt („%2“) und bleibt, wie es ist.").arg(why.profile, why.entry);
    return {text, std::make_error_code(std::errc::operation_not_permitted)};
}

Failure inProject(const Location &project)
{
    return {QStringLiteral("Gehört zum Software-Projekt „%1“ und bleibt, bis es geprüft ist.").arg(shownName(project)),
            std::make_error_code(std::errc::operation_not_permitted)};
}

} // namespace

Guard::Guard(const SystemLocations &locations, const std::vector<FolderProfile> &profiles)
    : m_locations(locations)
    , m_protected(profiles)
    , m_projects(locations.home())
{
}

FolderEntry Guard::entryOf(const Location &entry) const
{
    return m_folders.entryOf(entry);
}

bool Guard::isProtected(const Location &entry) const
{
    if (m_protected.empty())
        return false;
    const Location named = standardised(entry);
    return m_protected.over(named, m_folders.real(named)).has_value();
}

bool Guard::isProtectedAsWhole(const Location &entry) const
{
    if (m_protected.empty())
        return false;
    const Location named = standardised(entry);
    return m_protected.of(named, m_folders.real(named)).has_value();
}

bool Guard::isInProject(const Location &entry) const
{
    return m_projects.aboveEntriesOf(m_folders.realFolder(standardised(entry))).has_value();
}

std::optional<FolderProfile> Guard::profileOf(const Location &location) const
{
    return m_protected.profileOf(location);
}

Result<void> Guard::check(const Location &entry, Review review) const
{
    if (!m_locations.isAllowedEntry(entry))
        return failure(systemLocation());
    return checkReal(standardised(entry), realEntry(entry), review);
}

Result<void> Guard::checkIn(const SystemLocations::Examined &folder, const Location &entry, Review review) const
{
    if (!m_locations.isAllowedFileIn(folder, entry))
        return failure(systemLocation());
    const std::string_view path = entry.native();
    if (path.substr(0, path.rfind('/')) == folder.real)
        return checkReal(entry, entry, review);
    return checkReal(entry, Location(folder.real) / entry.filename(), review);
}

Result<void> Guard::checkReal(const Location &entry, const Location &real, Review review) const
{
    if (const std::optional<Protection> protection = m_protected.of(entry, real))
        return failure(protectedBy(*protection));
    const std::optional<Location> project = review == Review::Missing ? m_projects.above(real) : std::nullopt;
    if (project && !m_protected.profileOf(real.parent_path()))
        return failure(inProject(*project));
    return {};
}

} // namespace brellin
