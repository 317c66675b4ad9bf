#pragma once

#include "Base/Result.h"
#include "Disk/EntryPlace.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace brellin {

/// The open folders from the top of a tree down to where the work is. Only the deepest stay open, so that a tree may
/// be of any depth; the others are opened again through "..", and must be the same folders then.
class CopyTreeFolders {
public:
    /// How many folders stay open at once, at least one.
    explicit CopyTreeFolders(std::size_t keptOpen = 32) : m_keptOpen(keptOpen) {}

    std::size_t depth() const { return m_levels.size(); }
    /// The deepest folder.
    int current() const { return m_levels.back().folder.number(); }
    /// Whether this folder is one of them: entering it would never end.
    bool contains(const struct stat &folder) const;

    void enter(Descriptor folder, const struct stat &status);
    /// Gives up the deepest folder, which stays open for its last changes; the one above is the current one then.
    Result<Descriptor> leave();

private:
    struct Level {
        Descriptor folder;
        dev_t device;
        ino_t inode;
    };
    std::size_t m_keptOpen;
    std::vector<Level> m_levels;
};

/// A folder by its path below an open one ("" for that one), to work in it. Opened piece by piece: the path may be longer than
/// the system takes at once, and no piece may be a link.
Result<Descriptor> openFolderBelow(int top, std::string_view relative);

} // namespace brellin
