#include "Disk/CopyTreeRemoval.h"

#include "Disk/CopyTreeFolders.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

class TreeRemoval {
public:
    explicit TreeRemoval(const OwnEntries *only) : m_only(only) {}

    Result<void> run(NameIn top)
    {
        m_mount = mountOf(top.folder);
        remove(top, 0);
        while (!m_levels.empty()) {
            Level &level = m_levels.back();
            if (level.next == level.entries.size()) {
                TRY(leave(top));
                continue;
            }
            const std::string name = std::move(level.entries[level.next++].name);
            remove({m_folders.current(), name.c_str()}, level.path);
        }
        if (m_failure)
            return failure(*m_failure);
        return {};
    }

private:
    struct Level {
        std::string name;
        std::uint64_t path;
        std::vector<ListedName> entries;
        std::size_t next = 0;
    };

    void note(const Failure &why)
    {
        if (!m_failure && !why.is(std::errc::no_such_file_or_directory))
            m_failure = why;
    }

    void noteSystem(int outcome)
    {
        if (outcome != 0)
            note(Failure::lastSystem());
    }

    void remove(NameIn entry, std::uint64_t folderPath)
    {
        const auto status = statusOf(entry);
        const std::uint64_t path = OwnEntries::pathMark(folderPath, entry.name);
        if (!status)
            return note(status.error());
        if (m_only && !m_only->contains(path, status->st_ino))
            return;
        if (!S_ISDIR(status->st_mode))
            return noteSystem(::unlinkat(entry.folder, entry.name, 0));
        if (const auto entered = enter(entry, *status, path); !entered)
            note(entered.error());
    }

    /// A copy may have got rights that keep its owner out.
    static Result<Descriptor> openWithAllRights(NameIn entry)
    {
        auto folder = openFolder(entry);
        if (!folder && folder.error().is(std::errc::permission_denied) &&
            ::fchmodat(entry.folder, entry.name, S_IRWXU, AT_SYMLINK_NOFOLLOW) == 0)
            folder = openFolder(entry);
        return folder;
    }

    Result<void> enter(NameIn entry, const struct stat &expected, std::uint64_t path)
    {
        Descriptor folder = TRY(openWithAllRights(entry));
        const struct stat status = TRY(statusOf({folder.number(), "."}));
        if (!sameEntry(status, expected) || mountOf(folder.number()) != m_mount)
            return failure(Failure::system(EBUSY));
        if ((status.st_mode & S_IRWXU) != S_IRWXU)
            noteSystem(::fchmod(folder.number(), S_IRWXU));
        std::vector<ListedName> entries = TRY(listFolder(folder.number()));
        m_folders.enter(std::move(folder), status);
        m_levels.push_back({entry.name, path, std::move(entries)});
        return {};
    }

    Result<void> leave(NameIn top)
    {
        const Level left = std::move(m_levels.back());
        m_levels.pop_back();
        TRY(m_folders.leave());
        const int above = m_levels.empty() ? top.folder : m_folders.current();
        const bool emptied = ::unlinkat(above, left.name.c_str(), AT_REMOVEDIR) == 0;
        const bool holdsForeign = m_only && !emptied && (errno == ENOTEMPTY || errno == EEXIST);
        if (!emptied && !holdsForeign)
            note(Failure::lastSystem());
        return {};
    }

    const OwnEntries *m_only;
    std::uint64_t m_mount = 0;
    CopyTreeFolders m_folders;
    std::vector<Level> m_levels;
    std::optional<Failure> m_failure;
};

} // namespace

std::uint64_t OwnEntries::pathMark(std::uint64_t folder, std::string_view name)
{
    // The constant spreads the bits (2^64 / golden ratio), so that "a/b" and "b/a" differ.
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

Result<void> removeTree(NameIn top, const OwnEntries *only)
{
    return TreeRemoval(only).run(top);
}

} // namespace brellin
