#include "Agent/EntrySearch.h"

#include "Agent/Placement.h"
#include "Disk/Walk.h"

namespace brellin {

namespace {

std::map<FileIdentity, Location> entriesOf(const Location &folder)
{
    std::map<FileIdentity, Location> entries;
    const auto collect = [&](const WalkEntry &entry) {
        if (!entry.unreadable && !entry.name.starts_with(Placement::temporaryPrefix))
            entries.emplace(entry.attributes.identity, entry.location());
        return WalkStep::Continue;
    };
    // A folder that cannot be read holds nothing that can be found.
    (void)walk(folder, {.attributes = Attribute::Identity, .subfolders = false, .prune = {}}, collect);
    return entries;
}

} // namespace

bool isEntry(const Location &location, const FileIdentity &identity)
{
    const Result<FileAttributes> attributes = readAttributes(location);
    return attributes && attributes->identity == identity;
}

std::optional<Location> EntrySearch::find(const Location &folder, const FileIdentity &identity)
{
    auto known = m_folders.find(folder);
    if (known == m_folders.end())
        known = m_folders.emplace(folder, entriesOf(folder)).first;
    const auto found = known->second.find(identity);
    return found == known->second.end() ? std::nullopt : std::optional(found->second);
}

} // namespace brellin
