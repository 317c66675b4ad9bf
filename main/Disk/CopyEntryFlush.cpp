#include "Disk/CopyEntryFlush.h"

#include "Disk/CopyEntry.h"
#include "Disk/CopyTreeFolders.h"
#include "Disk/EntryPlace.h"

#include <cerrno>
#include <utility>
#include <vector>

namespace brellin {

namespace {

/// Flushes single files while there are few. From a limit on flushes the whole volume once, which also reports failed
/// writes but waits for writes of others; not where that has no effect.
class TreeFlush {
public:
    Result<void> run(NameIn top)
    {
        TRY(flush(top));
        while (!m_levels.empty()) {
            Level &level = m_levels.back();
            if (level.next < level.entries.size()) {
                const std::string name = std::move(level.entries[level.next++].name);
                TRY(flush({m_folders.current(), name.c_str()}));
                continue;
            }
            TRY(write(m_folders.current()));
            m_levels.pop_back();
            TRY(m_folders.leave());
        }
        return flushAbove(top);
    }

private:
    struct Level {
        std::vector<ListedName> entries;
        std::size_t next = 0;
    };

    Result<void> flush(NameIn entry)
    {
        const struct stat status = TRY(statusOf(entry));
        const bool folder = S_ISDIR(status.st_mode);
        if (!folder && !S_ISREG(status.st_mode))
            return {};
        auto opened = folder ? openFolder(entry) : openForReading(entry);
        // Copied permissions may lock out the owner: flush the whole volume instead.
        if (!opened && opened.error().is(std::errc::permission_denied))
            return flushVolumeOnce(TRY(openFolder({entry.folder, "."})).number());
        if (!opened)
            return failure(opened.error());
        if (!folder) {
            TRY(write(opened->number()));
            forgetPages(opened->number());
            return {};
        }
        std::vector<ListedName> entries = TRY(listFolder(opened->number()));
        m_folders.enter(*std::move(opened), status);
        m_levels.push_back({std::move(entries)});
        return {};
    }

    Result<void> flushAbove(NameIn top)
    {
        const auto above = openFolder({top.folder, "."});
        if (above)
            return write(above->number());
        if (!above.error().is(std::errc::permission_denied))
            return failure(above.error());
        // The folder may be write-only: flush its volume through the entry put there.
        const struct stat status = TRY(statusOf(top));
        const auto within = S_ISDIR(status.st_mode) ? openFolder(top) : openForReading(top);
        return within ? flushVolumeOnce(within->number()) : Result<void>();
    }

    Result<void> write(int file)
    {
        constexpr int few = 64;
        if (m_volumeFlushed)
            return {};
        if (++m_flushed > few && isFlushedAsAWhole(file))
            return flushVolumeOnce(file);
        if (flushFile(file) == 0)
            return {};
        // Some file systems cannot flush folders, some FUSE ones nothing at all. Write errors have other codes.
        if (errno == EINVAL || errno == ENOTSUP || errno == ENOSYS)
            return {};
        return failure(Failure::lastSystem());
    }

    Result<void> flushVolumeOnce(int file)
    {
        if (!m_volumeFlushed && flushVolume(file) != 0)
            return failure(Failure::lastSystem());
        m_volumeFlushed = true;
        return {};
    }

    CopyTreeFolders m_folders;
    std::vector<Level> m_levels;
    int m_flushed = 0;
    bool m_volumeFlushed = false;
};

} // namespace

Result<void> flushEntry(const Location &location)
{
    const EntryPlace place = TRY(openPlace(location));
    return TreeFlush().run(place.at());
}

} // namespace brellin
