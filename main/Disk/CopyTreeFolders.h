#pragma once

#include "Base/Result.h"
#include "Disk/EntryPlace.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace brellin {

/// The open folders from the top of a tree down to the current one. Keeps only the deepest open, so that a tree may
/// have any depth; reopens others through "..", checking that they are the same.
class CopyTreeFolders {
public:
    /// `keptOpen` is the number of folders kept open, at least one.
    explicit CopyTreeFolders(std::size_t keptOpen = 32) : m_keptOpen(keptOpen) {}

    std::size_t depth() const { return m_levels.size(); }
    /// The deepest folder.
    int current() const { return m_levels.back().folder.number(); }
    /// Whether this folder is among them: entering it would loop.
    bool contains(const struct stat &folder) const;

    void enter(Descriptor folder, const struct stat &status);
    /// Returns the deepest folder, still open for final changes; its parent becomes the current one.
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

/// Opens a folder by its path below an open one; "" opens that one again. Opens one component at a time, since the path
/// may exceed the system's limit; never follows links.
Result<Descriptor> openFolderBelow(int top, std::string_view relative);

} // namespace brellin
