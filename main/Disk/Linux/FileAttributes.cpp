#include "Disk/FileAttributes.h"

#include "Disk/EntryPlace.h"
#include "Disk/Linux/Statx.h"

#include <sys/sysmacros.h>

#include <algorithm>

namespace brellin {

namespace {

Instant instantOf(const statx_timestamp &time)
{
    // Range of nanoseconds in 64 bits, 1677 to 2262: file systems may store times beyond.
    constexpr std::int64_t limit = 9'223'372'035;
    const std::int64_t seconds = std::clamp<std::int64_t>(time.tv_sec, -limit, limit);
    return Instant(std::chrono::seconds(seconds) + std::chrono::nanoseconds(time.tv_nsec));
}

} // namespace

EntryKind kindOf(unsigned mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return EntryKind::File;
    case S_IFDIR:
        return EntryKind::Folder;
    case S_IFLNK:
        return EntryKind::Link;
    default:
        return EntryKind::Special;
    }
}

unsigned statxMask(Attribute wanted)
{
    unsigned mask = STATX_TYPE;
    if (contains(wanted, Attribute::Identity))
        mask |= STATX_INO | STATX_NLINK | STATX_MNT_ID;
    if (contains(wanted, Attribute::Size))
        mask |= STATX_SIZE | STATX_BLOCKS;
    if (contains(wanted, Attribute::Modified))
        mask |= STATX_MTIME;
    if (contains(wanted, Attribute::Created))
        mask |= STATX_BTIME;
    if (contains(wanted, Attribute::Accessed))
        mask |= STATX_ATIME;
    if (contains(wanted, Attribute::Mode))
        mask |= STATX_MODE;
    return mask;
}

FileAttributes attributesFrom(const struct statx &status, Attribute wanted)
{
    FileAttributes attributes;
    attributes.kind = kindOf(status.stx_mode);
    if (contains(wanted, Attribute::Identity)) {
        attributes.identity = {makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino};
        attributes.links = status.stx_nlink;
        if ((status.stx_mask & STATX_MNT_ID) != 0)
            attributes.mount = status.stx_mnt_id;
    }
    if (contains(wanted, Attribute::Size)) {
        attributes.size = static_cast<std::int64_t>(status.stx_size);
        attributes.diskSize = static_cast<std::int64_t>(status.stx_blocks) * 512;
    }
    if (contains(wanted, Attribute::Modified))
        attributes.modified = instantOf(status.stx_mtime);
    if (contains(wanted, Attribute::Created) && (status.stx_mask & STATX_BTIME) != 0)
        attributes.created = instantOf(status.stx_btime);
    if (contains(wanted, Attribute::Accessed))
        attributes.accessed = instantOf(status.stx_atime);
    if (contains(wanted, Attribute::Mode))
        attributes.mode = status.stx_mode & 07777u;
    return attributes;
}

namespace {

Result<FileAttributes> allAttributes(int folder, const char *name, int flags)
{
    constexpr Attribute all = Attribute::Identity | Attribute::Size | Attribute::Modified | Attribute::Created |
                              Attribute::Accessed | Attribute::Mode;
    struct statx status;
    if (::statx(folder, name, flags, statxMask(all), &status) != 0)
        return failure(Failure::lastSystem());
    return attributesFrom(status, all);
}

} // namespace

Result<FileAttributes> readAttributes(const Location &location)
{
    return allAttributes(AT_FDCWD, location.c_str(), statxFlags);
}

Result<FileAttributes> attributesOf(const Descriptor &opened)
{
    return allAttributes(opened.number(), "", AT_EMPTY_PATH);
}

Result<FileAttributes> attributesOf(NameIn entry)
{
    return allAttributes(entry.folder, entry.name, statxFlags);
}

} // namespace brellin
