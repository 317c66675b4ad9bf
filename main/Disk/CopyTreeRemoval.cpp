#include "Disk/CopyTreeRemoval.h"

#include "Disk/RemovalWalk.h"

#include <algorithm>
#include <cerrno>
#include <functional>

#include <fcntl.h>

namespace brellin {

namespace {

class TreeRemoval : private RemovalWalk {
public:
    explicit TreeRemoval(const OwnEntries *only) : m_only(only) {}

    Result<void> run(NameIn top) { return RemovalWalk::run(top, OwnEntries::pathMark(0, top.name)); }

private:
    bool mayGo(NameIn, std::uint64_t path, const struct stat &now) override
    {
        return !m_only || m_only->contains(path, now.st_ino);
    }

    /// Copied permissions may lock out the owner: grants access first.
    Result<Descriptor> open(NameIn entry) override
    {
        auto folder = openFolder(entry);
        if (!folder && folder.error().is(std::errc::permission_denied) &&
            ::fchmodat(entry.folder, entry.name, S_IRWXU, AT_SYMLINK_NOFOLLOW) == 0)
            folder = openFolder(entry);
        return folder;
    }

    void entered(std::string_view name, const Descriptor &folder, const struct stat &status) override
    {
        if ((status.st_mode & S_IRWXU) != S_IRWXU && ::fchmod(folder.number(), S_IRWXU) != 0)
            note(Failure::lastSystem(), name);
    }

    /// With `only`, a folder that contains entries of others is kept; that is no failure.
    void filled(std::string_view name) override
    {
        if (!m_only)
            note(Failure::system(ENOTEMPTY), name);
    }

    const OwnEntries *m_only;
};

} // namespace

std::uint64_t OwnEntries::pathMark(std::uint64_t folder, std::string_view name)
{
    // The constant (2^64 / golden ratio) spreads the bits, so that "a/b" and "b/a" differ.
    return (folder * 0x9E3779B97F4A7C15ULL + 1) ^ std::hash<std::string_view>()(name);
}

void OwnEntries::sort()
{
    std::ranges::sort(m_marks);
}

bool OwnEntries::contains(std::uint64_t path, ino_t inode) const
{
    return std::ranges::binary_search(m_marks, m_knownBy == KnownBy::Inode ? inode : path);
}

bool keepsInodes(const Location &folder)
{
    const Result<Descriptor> opened = openFolderPlace(folder);
    return opened && knownBy(opened->number()) == OwnEntries::KnownBy::Inode;
}

Result<void> removeTree(NameIn top, const OwnEntries *only)
{
    return TreeRemoval(only).run(top);
}

} // namespace brellin
