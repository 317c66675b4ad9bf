#pragma once

#include "ContentView/FileItem.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace brellin {

/// A list of entries that never changes and is shared, not copied, with the place of each in the order of names: a big list
/// is compared once, by whoever makes it, and then sorts by numbers. Made on any thread.
class FileItems {
public:
    FileItems() = default;
    explicit FileItems(std::vector<FileItem> items);

    std::size_t size() const { return m_shared ? m_shared->items.size() : 0; }
    bool empty() const { return size() == 0; }
    const FileItem &operator[](std::size_t index) const { return m_shared->items[index]; }
    auto begin() const { return list().begin(); }
    auto end() const { return list().end(); }

    /// The place among all names, German, by number and without regard to case; equal names have the same.
    std::uint32_t nameRank(std::size_t index) const { return m_shared->nameRanks[index]; }

    /// Whether both are one list in memory.
    bool operator==(const FileItems &other) const { return m_shared == other.m_shared; }
    /// Whether both list the same, item by item.
    bool sameContent(const FileItems &other) const;

private:
    struct Shared {
        std::vector<FileItem> items;
        std::vector<std::uint32_t> nameRanks;
    };
    const std::vector<FileItem> &list() const;
    static void free(const Shared *list);

    std::shared_ptr<const Shared> m_shared;
};

} // namespace brellin
