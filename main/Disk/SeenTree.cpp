#include "Disk/SeenTree.h"

#include "Disk/CopyTreeRemoval.h"
#include "Disk/KeepingRemoval.h"
#include "Disk/WholeWalk.h"

#include <algorithm>
#include <utility>

namespace brellin {

namespace {

EntryKind kindOfEntry(const struct stat &status)
{
    if (S_ISREG(status.st_mode))
        return EntryKind::File;
    if (S_ISDIR(status.st_mode))
        return EntryKind::Folder;
    return S_ISLNK(status.st_mode) ? EntryKind::Link : EntryKind::Special;
}

std::uint64_t markBelow(std::uint64_t top, const Location &relative)
{
    std::uint64_t mark = top;
    for (const Location &name : relative)
        mark = OwnEntries::pathMark(mark, name.native());
    return mark;
}

/// Removes what is unchanged.
class SeenRemoval : public KeepingRemoval {
public:
    SeenRemoval(Location entry, const SeenTree &seen) : KeepingRemoval(std::move(entry)), m_seen(seen) {}

private:
    Result<bool> goes(NameIn, std::uint64_t path, const struct stat &now) override { return m_seen.holds(path, now); }

    const SeenTree &m_seen;
};

} // namespace

Result<SeenTree> SeenTree::of(const Location &entry, const JobControl *control)
{
    const Location place = standardised(entry);
    const EntryPlace opened = TRY(openPlace(place));
    SeenTree seen;
    seen.m_top = OwnEntries::pathMark(0, opened.name);
    seen.m_inodesLast = knownBy(opened.folder.number()) == OwnEntries::KnownBy::Inode;
    const FileAttributes top = TRY(readAttributes(place));
    seen.m_entries.push_back(seen.entryOf(seen.m_top, top));
    if (!top.isFolder())
        return seen;
    WalkOptions options;
    options.attributes = Attribute::Identity | Attribute::Size | Attribute::Modified;
    const auto take = [&](const WalkEntry &one) {
        const Location relative = one.location().native().substr(place.native().size() + 1);
        seen.m_entries.push_back(seen.entryOf(markBelow(seen.m_top, relative), one.attributes));
        return WalkStep::Continue;
    };
    TRY(walkWhole(place, options, take, control));
    std::ranges::sort(seen.m_entries);
    return seen;
}

std::int64_t SeenTree::bytes() const
{
    std::int64_t sum = 0;
    for (const Entry &entry : m_entries)
        sum += entry.size;
    return sum;
}

SeenTree::Entry SeenTree::entryOf(std::uint64_t path, const FileAttributes &attributes) const
{
    const std::uint64_t inode = m_inodesLast ? attributes.identity.inode : 0;
    if (attributes.isFolder())
        return {path, inode, 0, {}, attributes.kind};
    return {path, inode, attributes.size, attributes.modified, attributes.kind};
}

bool SeenTree::holds(std::uint64_t path, const struct stat &now) const
{
    FileAttributes attributes;
    attributes.kind = kindOfEntry(now);
    attributes.identity = {now.st_dev, now.st_ino};
    attributes.size = now.st_size;
    attributes.modified = instantFrom(now.st_mtim);
    return std::ranges::binary_search(m_entries, entryOf(path, attributes));
}

Result<std::vector<Location>> removeSeen(const Location &entry, const SeenTree &seen)
{
    const EntryPlace place = TRY(openPlace(entry));
    return SeenRemoval(standardised(entry), seen).run(place.at(), seen.top());
}

} // namespace brellin
