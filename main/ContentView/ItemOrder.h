#pragma once

#include "ContentView/FileItems.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// The columns that entries sort by.
enum class SortKey { Name, Size, Modified, Kind, Tags };
enum class SortDirection { Ascending, Descending };

/// One step of an order; the next decides where it sees no difference.
struct SortComparator {
    SortKey key = SortKey::Name;
    SortDirection direction = SortDirection::Ascending;

    bool operator==(const SortComparator &) const = default;
};
using SortOrder = std::vector<SortComparator>;

/// The size of a folder where it is known.
using KnownFolderSize = std::function<std::optional<std::int64_t>(const FileItem &folder)>;

/// Which entries are shown; all where it is empty.
using ItemFilter = std::function<bool(const FileItem &)>;

/// The rows that a view draws: some of the entries of a list, in an order of their own. Shared, not copied.
class DisplayedItems {
public:
    DisplayedItems() = default;
    DisplayedItems(FileItems items, std::vector<std::uint32_t> rows)
        : m_items(std::move(items))
        , m_rows(std::make_shared<const std::vector<std::uint32_t>>(std::move(rows)))
    {
    }

    std::size_t size() const { return m_rows ? m_rows->size() : 0; }
    bool empty() const { return size() == 0; }
    const FileItem &operator[](std::size_t row) const { return m_items[(*m_rows)[row]]; }

    /// Whether both are of one list, perhaps in another order.
    bool sharesItems(const DisplayedItems &other) const { return m_items == other.m_items; }
    /// Whether the same entries stand in the same rows, whatever became of them.
    bool hasSameRows(const DisplayedItems &other) const;

    bool operator==(const DisplayedItems &) const = default;

private:
    FileItems m_items;
    std::shared_ptr<const std::vector<std::uint32_t>> m_rows;
};

/// What the display of a list depends on.
struct DisplayOptions {
    SortOrder order{SortComparator{}};
    ItemFilter filter = {};
    KnownFolderSize folderSize = {}; ///< counts where the order begins with the size
};

/// Whether the first comparator is the size.
bool sortsBySize(const SortOrder &order);

/// The entries that pass the filter in their order, folders before files in either direction.
DisplayedItems displayed(const FileItems &items, const DisplayOptions &options);

} // namespace brellin
