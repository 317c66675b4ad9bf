#pragma once

#include "ContentView/FileItems.h"
#include "ContentView/ItemGroups.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// Sortable columns.
enum class SortKey { Name, Size, Modified, Kind, Tags, Folder, Created, Accessed, Owner, Rights };
enum class SortDirection { Ascending, Descending };

/// One sort criterion; the next one decides between equal entries.
struct SortComparator {
    SortKey key = SortKey::Name;
    SortDirection direction = SortDirection::Ascending;

    bool operator==(const SortComparator &) const = default;
};
using SortOrder = std::vector<SortComparator>;

/// The order by one column; equal entries are sorted by name.
SortOrder orderBy(SortKey key, SortDirection direction);
/// The direction of a column when it is first sorted by: the largest and the newest first.
SortDirection firstDirection(SortKey key);
/// The order after choosing a column; choosing the same one again reverses it.
SortOrder chosenOrder(const SortOrder &now, SortKey key);
/// The same for the column that decides between equal entries of the first one.
SortOrder chosenSecond(const SortOrder &now, SortKey key);

/// The size of a folder in bytes, if known.
using KnownFolderSize = std::function<std::optional<std::int64_t>(const FileItem &folder)>;

/// Whether an entry is shown; empty shows all.
using ItemFilter = std::function<bool(const FileItem &)>;

/// The rows of a view: some entries of a list in display order. Shared, cheap to copy.
class DisplayedItems {
public:
    DisplayedItems() = default;
    DisplayedItems(FileItems items, std::vector<std::uint32_t> rows, std::vector<RowGroup> groups = {})
        : m_items(std::move(items))
        , m_shown(std::make_shared<const Shown>(std::move(rows), std::move(groups)))
    {
    }

    std::size_t size() const { return m_shown ? m_shown->rows.size() : 0; }
    bool empty() const { return size() == 0; }
    const FileItem &operator[](std::size_t row) const { return m_items[m_shown->rows[row]]; }
    /// The headings, by their first row; none if the rows are not grouped, otherwise the first stands before row 0.
    const std::vector<RowGroup> &groups() const;

    /// The whole list, including entries that the filter hides.
    const FileItems &items() const { return m_items; }

    /// Whether both are made from the same list, regardless of order and filter.
    bool sharesItems(const DisplayedItems &other) const { return m_items == other.m_items; }
    /// Whether both have the same entries in the same rows under the same headings, whatever their attributes.
    bool hasSameRows(const DisplayedItems &other) const;

    bool operator==(const DisplayedItems &) const = default;

private:
    struct Shown {
        Shown(std::vector<std::uint32_t> itemOfRow, std::vector<RowGroup> headings)
            : rows(std::move(itemOfRow))
            , groups(std::move(headings))
        {
        }
        std::vector<std::uint32_t> rows;
        std::vector<RowGroup> groups;
    };
    FileItems m_items;
    std::shared_ptr<const Shown> m_shown;
};

/// Options of displayed().
struct DisplayOptions {
    SortOrder order{SortComparator{}};
    ItemFilter filter = {};
    KnownFolderSize folderSize = {}; ///< only used if sorting by size first
    GroupKey group = GroupKey::None;
    QDate today = {}; ///< only used for groups by date
};

/// Whether a criterion needs the details of entries.
bool usesDetails(const SortOrder &order);

/// Whether the first criterion is the size.
bool sortsBySize(const SortOrder &order);

/// The entries that pass the filter, sorted within their groups; folders always come before files. Groups are reversed if
/// the order by the same column is.
DisplayedItems displayed(const FileItems &items, const DisplayOptions &options);

} // namespace brellin
