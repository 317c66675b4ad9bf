#include "Disk/CopyEntryMetadata.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr mode_t allBits = 07777;

/// Whether the target cannot store this, at all or for this user. No reason to fail the copy.
bool cannotKeep(int error)
{
    // NOLINTNEXTLINE(misc-redundant-expression): equal on Linux, different elsewhere
    return error == EPERM || error == ENOTSUP || error == EOPNOTSUPP || error == ENOSYS || error == EINVAL;
}

} // namespace

Result<std::uint64_t> CopyMetadata::apply(int source, const struct stat &from, int destination, const struct stat &made)
{
    // First the owner, since changing it clears capabilities, setuid and setgid.
    const Kept kept = TRY(giveOwner(from, destination, made));
    MetadataMark mark(from);
    const AccessList list = TRY(copyAttributes(source, destination, mark));
    mode_t mode = from.st_mode & allBits;
    // If the owner changed, drop setuid and setgid: nobody else's program may run with this user's rights.
    if (!kept.user)
        mode &= ~static_cast<mode_t>(S_ISUID);
    if (!kept.group)
        mode &= ~static_cast<mode_t>(S_ISGID);
    const bool changedOwner = from.st_uid != made.st_uid || from.st_gid != made.st_gid;
    if (mode != (made.st_mode & allBits) || changedOwner || list == AccessList::Set)
        TRY(giveMode(destination, mode));
    TRY(giveTimes(from, destination));
    return mark.number();
}

Result<CopyMetadata::Kept> CopyMetadata::giveOwner(const struct stat &from, int destination, const struct stat &made)
{
    if (from.st_uid == made.st_uid && from.st_gid == made.st_gid)
        return Kept{true, true};
    if (::fchown(destination, from.st_uid, from.st_gid) == 0)
        return Kept{true, true};
    if (!cannotKeep(errno))
        return failure(Failure::lastSystem());
    // Even so the user may assign a group they are in.
    const bool group = from.st_gid == made.st_gid || ::fchown(destination, static_cast<uid_t>(-1), from.st_gid) == 0;
    return Kept{from.st_uid == made.st_uid, group};
}

Result<void> CopyMetadata::giveMode(int destination, mode_t mode)
{
    if (::fchmod(destination, mode) == 0)
        return {};
    if (!cannotKeep(errno))
        return failure(Failure::lastSystem());
    m_lost.rights = true;
    return {};
}

Result<void> CopyMetadata::giveTimes(const struct stat &from, int destination)
{
    const timespec times[2] = {from.st_atim, from.st_mtim};
    if (::futimens(destination, times) == 0)
        return {};
    if (!cannotKeep(errno))
        return failure(Failure::lastSystem());
    m_lost.times = true;
    return {};
}

Result<void> CopyMetadata::applyToLink(const struct stat &from, NameIn destination, const struct stat &made)
{
    const bool sameOwner = from.st_uid == made.st_uid && from.st_gid == made.st_gid;
    if (!sameOwner &&
        ::fchownat(destination.folder, destination.name, from.st_uid, from.st_gid, AT_SYMLINK_NOFOLLOW) != 0 &&
        !cannotKeep(errno))
        return failure(Failure::lastSystem());
    // Ignore lost times of links, which nobody sees.
    const timespec times[2] = {from.st_atim, from.st_mtim};
    if (::utimensat(destination.folder, destination.name, times, AT_SYMLINK_NOFOLLOW) != 0 && !cannotKeep(errno))
        return failure(Failure::lastSystem());
    return {};
}

void CopyMetadata::include(const CopyMetadata &other)
{
    m_lost.attributes = m_lost.attributes || other.m_lost.attributes;
    m_lost.rights = m_lost.rights || other.m_lost.rights;
    m_lost.times = m_lost.times || other.m_lost.times;
    m_lost.hardLinks = m_lost.hardLinks || other.m_lost.hardLinks;
}

QStringList CopyMetadata::notKept() const
{
    QStringList texts;
    if (m_lost.attributes)
        texts << QStringLiteral("Erweiterte Attribute und Markierungen kann das Ziel nicht speichern.");
    if (m_lost.rights)
        texts << QStringLiteral("Zugriffsrechte kann das Ziel nicht vollständig speichern.");
    if (m_lost.times)
        texts << QStringLiteral("Änderungszeiten kann das Ziel nicht speichern.");
    if (m_lost.hardLinks)
        texts << QStringLiteral("Dateien mit mehreren Namen sind am Ziel einzelne Dateien.");
    return texts;
}

} // namespace brellin
