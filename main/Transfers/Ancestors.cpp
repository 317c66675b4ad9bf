#include "Transfers/Ancestors.h"

#include "Disk/EntryPlace.h"

#include <algorithm>
#include <utility>

#include <sys/stat.h>

namespace brellin {

namespace {

FileIdentity identityOf(const struct stat &status)
{
    return {status.st_dev, status.st_ino};
}

/// Identity of the entry and, for a link, of its target.
Result<std::vector<FileIdentity>> identitiesOf(const Location &entry)
{
    struct stat status{};
    if (::lstat(entry.c_str(), &status) != 0)
        return failure(Failure::lastSystem());
    std::vector<FileIdentity> all{identityOf(status)};
    if (S_ISLNK(status.st_mode) && ::stat(entry.c_str(), &status) == 0)
        all.push_back(identityOf(status));
    return all;
}

} // namespace

Result<std::vector<FileIdentity>> selfAndAncestors(const Location &folder)
{
    std::vector<FileIdentity> all;
    Descriptor at = TRY(openFolderPlace(folder));
    for (;;) {
        const FileIdentity identity = identityOf(TRY(statusOf({at.number(), "."})));
        if (!all.empty() && identity == all.back())
            return all;
        all.push_back(identity);
        at = TRY(openFolderPlace(NameIn{at.number(), ".."}));
    }
}

StayingEntries::StayingEntries(const std::vector<Location> &sources)
{
    for (const Location &source : sources)
        add(source);
}

void StayingEntries::add(const Location &given)
{
    const Location source = standardised(given);
    const auto identities = identitiesOf(source);
    if (!identities) {
        // Ignore a missing source: its own step reports that.
        m_complete = m_complete && identities.error().is(std::errc::no_such_file_or_directory);
        return;
    }
    m_sources.insert(identities->front());
    const Location parent = source.parent_path();
    if (!m_parents.insert(parent).second)
        return;
    if (const auto above = selfAndAncestors(parent))
        m_aboveSources.insert(above->begin(), above->end());
    else
        m_complete = false;
}

std::optional<WhyItStays> StayingEntries::whyItStays(const Location &existing) const
{
    const auto entry = identitiesOf(existing);
    const auto above = selfAndAncestors(existing.parent_path());
    const std::vector<FileIdentity> entries = entry.value_or(std::vector<FileIdentity>());
    const std::vector<FileIdentity> folders = above.value_or(std::vector<FileIdentity>());
    const auto isSource = [this](const FileIdentity &one) { return m_sources.contains(one); };
    if (std::ranges::any_of(entries, isSource))
        return WhyItStays::IsSource;
    if (std::ranges::any_of(entries, [this](const FileIdentity &one) { return m_aboveSources.contains(one); }))
        return WhyItStays::HoldsSource;
    if (std::ranges::find_first_of(entries, folders) != entries.end())
        return WhyItStays::HoldsDestination;
    if (std::ranges::any_of(folders, isSource))
        return WhyItStays::LiesInSource;
    return m_complete && entry && above ? std::nullopt : std::optional(WhyItStays::InDoubt);
}

bool StayingEntries::mayTakeIn(const Location &folder) const
{
    const auto lineage = selfAndAncestors(folder);
    if (!m_complete || !lineage || lineage->empty())
        return false;
    const auto isSource = [this](const FileIdentity &one) { return m_sources.contains(one); };
    const auto own = std::ranges::count(*lineage, lineage->front());
    return own == 1 && std::ranges::none_of(*lineage, isSource);
}

} // namespace brellin
