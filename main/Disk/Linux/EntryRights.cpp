#include "Disk/EntryRights.h"

#include "Base/Descriptor.h"
#include "Disk/CopyTreeRemoval.h"
#include "Disk/Linux/Statx.h"

#include <string>

#include <sys/xattr.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr Attribute wantedAttributes =
    Attribute::Identity | Attribute::Size | Attribute::Modified | Attribute::Created | Attribute::Mode;

/// Holds the entry itself, also one that may not be read.
Descriptor held(const Location &entry)
{
    return Descriptor(::open(entry.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
}

/// A path to what the descriptor holds, for calls that take no O_PATH descriptor.
std::string pathOf(const Descriptor &entry)
{
    return "/proc/self/fd/" + std::to_string(entry.number());
}

Result<ExaminedRights> examined(const Descriptor &entry)
{
    struct statx status{};
    if (::statx(entry.number(), "", AT_EMPTY_PATH | AT_NO_AUTOMOUNT,
                statxMask(wantedAttributes) | STATX_UID | STATX_GID | STATX_TYPE, &status) != 0)
        return failure(Failure::lastSystem());
    ExaminedRights found{attributesFrom(status, wantedAttributes),
                         {status.stx_mode & 07777U, status.stx_uid, status.stx_gid}};
    if (!found.attributes.isLink())
        found.accessList = ::getxattr(pathOf(entry).c_str(), "system.posix_acl_access", nullptr, 0) > 0;
    return found;
}

bool isMarked(const EntryMark &mark, const ExaminedRights &now, const Location &entry)
{
    const bool same = now.attributes.identity == mark.state.identity &&
                      (!mark.created || !now.attributes.created || *mark.created == *now.attributes.created);
    return same || (!keepsInodes(entry.parent_path()) && mark.isOf(now.attributes));
}

} // namespace

Result<ExaminedRights> examineRights(const Location &entry)
{
    const Descriptor open = held(entry);
    if (!open.isOpen())
        return failure(Failure::lastSystem());
    return examined(open);
}

Result<EntryRights> setRights(const Location &entry, const EntryMark &mark, const EntryRights &before,
                              const EntryRights &wanted)
{
    const Descriptor open = held(entry);
    if (!open.isOpen())
        return failure(Failure::lastSystem());
    const ExaminedRights now = TRY(examined(open));
    if (now.attributes.isLink() || !isMarked(mark, now, entry))
        return failure(QStringLiteral("Dort liegt inzwischen etwas anderes."));
    if (now.rights != before)
        return failure(QStringLiteral("Die Rechte wurden inzwischen geändert."));
    const bool otherOwner = wanted.owner != before.owner || wanted.group != before.group;
    if (otherOwner && ::fchownat(open.number(), "", wanted.owner, wanted.group, AT_EMPTY_PATH) != 0)
        return failure(Failure::lastSystem());
    // After the owner, whose change takes the set-id bits away.
    if ((otherOwner || wanted.mode != before.mode) && ::chmod(pathOf(open).c_str(), wanted.mode) != 0) {
        const Failure why = Failure::lastSystem();
        if (otherOwner) // as it was; who may give an entry away may take it back
            (void)::fchownat(open.number(), "", before.owner, before.group, AT_EMPTY_PATH);
        return failure(why);
    }
    return TRY(examined(open)).rights;
}

} // namespace brellin
