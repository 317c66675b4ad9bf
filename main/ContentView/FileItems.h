#pragma once

#include "ContentView/FileItem.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace brellin {

/// An immutable, shared list of entries with the rank of each name. Names are compared once, on the thread that makes
/// the list; sorting then compares numbers. Can be made on any thread.
class FileItems {
public:
    FileItems() = default;
    explicit FileItems(std::vector<FileItem> items);

    std::size_t size() const { return m_shared ? m_shared->items.size() : 0; }
    bool empty() const { return size() == 0; }
    const FileItem &operator[](std::size_t index) const { return m_shared->items[index]; }
    auto begin() const { return list().begin(); }
    auto end() const { return list().end(); }

    /// Rank in natural name order (German, numeric, case-insensitive); equal names have equal ranks.
    std::uint32_t nameRank(std::size_t index) const { return m_shared->nameRanks[index]; }

    /// Whether both share the same list in memory.
    bool operator==(const FileItems &other) const { return m_shared == other.m_shared; }
    /// Whether both have equal items in the same order.
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
