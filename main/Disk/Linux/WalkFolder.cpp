#include "Disk/WalkFolder.h"

#include "Disk/Linux/Statx.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace brellin {

namespace {

/// About 1,500 names: few system calls for large folders, small enough for threads to share.
constexpr std::size_t blockSize = 64 * 1024;
/// Only this much of a list is read: nobody writes longer ones by hand.
constexpr std::size_t longestHiddenList = 256 * 1024;

void take(WalkName &name, const dirent64 &record)
{
    name.bytes = std::string_view(record.d_name);
    name.kind = kindOf(DTTOIF(static_cast<unsigned>(record.d_type)));
    name.kindKnown = record.d_type != DT_UNKNOWN;
}

bool isOwnOrParentName(const char *name)
{
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

} // namespace

bool NameBlock::next(WalkName &name)
{
    while (m_position < m_end) {
        const auto *record = reinterpret_cast<const dirent64 *>(m_bytes.get() + m_position);
        m_position += record->d_reclen;
        if (isOwnOrParentName(record->d_name))
            continue;
        take(name, *record);
        return true;
    }
    return false;
}

Result<OpenFolder> OpenFolder::around(Descriptor folder)
{
    struct statx status;
    if (::statx(folder.number(), "", AT_EMPTY_PATH, STATX_INO | STATX_MNT_ID, &status) != 0)
        return failure(Failure::lastSystem());
    OpenFolder opened;
    opened.m_folder = std::move(folder);
    opened.m_identity = {makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino};
    opened.m_mount = (status.stx_mask & STATX_MNT_ID) != 0 ? status.stx_mnt_id : 0;
    return opened;
}

Result<OpenFolder> OpenFolder::open(const std::string &path, LastLink link)
{
    if (link == LastLink::Refuse)
        return around(TRY(openFolder({AT_FDCWD, path.c_str()})));
    const Descriptor place = TRY(openFolderPlace(path));
    return around(TRY(openFolder({place.number(), "."})));
}

Result<OpenFolder> OpenFolder::child(const char *name) const
{
    return around(TRY(openFolder({m_folder.number(), name})));
}

Result<OpenFolder> OpenFolder::parent() const
{
    return child("..");
}

Result<OpenFolder> OpenFolder::again() const
{
    return child(".");
}

bool OpenFolder::hasVolumeAt(const char *name) const
{
    struct statx status;
    if (::statx(m_folder.number(), name, statxFlags | AT_STATX_DONT_SYNC, STATX_INO | STATX_MNT_ID, &status) != 0)
        return false;
    const bool mountKnown = m_mount != 0 && (status.stx_mask & STATX_MNT_ID) != 0;
    return makedev(status.stx_dev_major, status.stx_dev_minor) != m_identity.device ||
           (mountKnown && status.stx_mnt_id != m_mount);
}

Result<void> OpenFolder::appendNames(NameBlock &block) const
{
    const ssize_t length =
        ::getdents64(m_folder.number(), block.m_bytes.get() + block.m_end, block.m_capacity - block.m_end);
    if (length < 0)
        return failure(Failure::lastSystem());
    block.m_end += static_cast<std::size_t>(length);
    return {};
}

Result<void> OpenFolder::readNames(NameBlock &block) const
{
    if (block.m_capacity < blockSize) {
        block.m_bytes = std::make_unique_for_overwrite<char[]>(blockSize);
        block.m_capacity = blockSize;
    }
    block.m_position = 0;
    block.m_end = 0;
    return appendNames(block);
}

Result<void> OpenFolder::readRemainingNames(NameBlock &block) const
{
    NameBlock all;
    const auto grow = [&all](std::size_t capacity) {
        auto bytes = std::make_unique_for_overwrite<char[]>(capacity);
        if (all.m_end > 0)
            std::memcpy(bytes.get(), all.m_bytes.get(), all.m_end);
        all.m_bytes = std::move(bytes);
        all.m_capacity = capacity;
    };
    grow(block.unread() + blockSize);
    if (block.unread() > 0)
        std::memcpy(all.m_bytes.get(), block.m_bytes.get() + block.m_position, block.unread());
    all.m_end = block.unread();
    for (std::size_t before = all.m_end + 1; before != all.m_end;) {
        if (all.m_capacity - all.m_end < blockSize)
            grow(2 * all.m_capacity);
        before = all.m_end;
        TRY(appendNames(all));
    }
    grow(all.m_end);
    block = std::move(all);
    return {};
}

bool OpenFolder::readAttributes(const char *name, Attribute wanted, FileAttributes &attributes) const
{
    struct statx status;
    if (::statx(m_folder.number(), name, statxFlags, statxMask(wanted), &status) != 0)
        return false;
    attributes = attributesFrom(status, wanted);
    return true;
}

std::shared_ptr<const HiddenNames> OpenFolder::hiddenNames() const
{
    const Result<Descriptor> list = openForReading({m_folder.number(), ".hidden"});
    if (!list)
        return nullptr;
    std::string text;
    struct stat status;
    if (::fstat(list->number(), &status) == 0 && S_ISREG(status.st_mode)) {
        std::array<char, 4096> piece;
        ssize_t length = 0;
        while (text.size() < longestHiddenList && (length = ::read(list->number(), piece.data(), piece.size())) > 0)
            text.append(piece.data(), static_cast<std::size_t>(length));
    }
    return text.empty() ? nullptr : std::make_shared<const HiddenNames>(hiddenNamesIn(text));
}

} // namespace brellin
