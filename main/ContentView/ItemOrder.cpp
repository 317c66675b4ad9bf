#include "ContentView/ItemOrder.h"

#include "ContentView/NameOrder.h"

#include <QHash>

#include <algorithm>
#include <ranges>

namespace brellin {

namespace {

/// Sort values of all entries in one column.
using Column = std::vector<std::uint64_t>;

std::uint64_t sortable(std::int64_t number)
{
    return static_cast<std::uint64_t>(number) ^ (std::uint64_t{1} << 63);
}

template <class Number>
Column numberColumn(const FileItems &items, const Number &number)
{
    Column column;
    column.reserve(items.size());
    for (const FileItem &item : items)
        column.push_back(sortable(number(item)));
    return column;
}

Column nameColumn(const FileItems &items)
{
    Column column;
    column.reserve(items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        column.push_back(items.nameRank(i));
    return column;
}

/// Ranks texts. Few distinct texts occur in many rows, so each is compared only once.
template <class Text>
Column textColumn(const FileItems &items, const Text &text)
{
    QHash<QString, std::uint64_t> places;
    std::vector<QString> texts;
    Column column;
    column.reserve(items.size());
    for (const FileItem &item : items) {
        const QString value = text(item);
        const auto known = places.constFind(value);
        const std::uint64_t place = known != places.constEnd() ? *known : texts.size();
        if (place == texts.size()) {
            places.insert(value, place);
            texts.push_back(value);
        }
        column.push_back(place);
    }
    const std::vector<std::uint32_t> ranks = textRanks(texts);
    for (std::uint64_t &place : column)
        place = ranks[place];
    return column;
}

Column columnOf(const FileItems &items, SortKey key)
{
    switch (key) {
    case SortKey::Name:
        return nameColumn(items);
    case SortKey::Size:
        return numberColumn(items, [](const FileItem &item) { return item.sizeSort(); });
    case SortKey::Modified:
        return numberColumn(items, [](const FileItem &item) { return item.modified.time_since_epoch().count(); });
    case SortKey::Kind:
        return textColumn(items, [](const FileItem &item) { return item.kind; });
    case SortKey::Tags:
        return textColumn(items, [](const FileItem &item) { return item.tags.join(u','); });
    case SortKey::Folder:
        return textColumn(items, [](const FileItem &item) { return shown(std::string_view(*item.folder)); });
    }
    return {};
}

Column knownSizes(const FileItems &items, const KnownFolderSize &folderSize)
{
    return numberColumn(items, [&](const FileItem &item) {
        const auto known = item.isFolder && folderSize ? folderSize(item) : std::nullopt;
        return known.value_or(item.sizeSort());
    });
}

/// An entry with its sort value, for locality while sorting.
struct Row {
    std::uint64_t value;
    std::uint32_t index;
};

/// Sorts stably by one column.
void sortBy(std::vector<std::uint32_t> &rows, Column column, SortDirection direction)
{
    const std::uint64_t turn = direction == SortDirection::Descending ? ~std::uint64_t{0} : 0;
    std::vector<Row> keyed;
    keyed.reserve(rows.size());
    for (const std::uint32_t row : rows)
        keyed.push_back({column[row] ^ turn, row});
    std::ranges::stable_sort(keyed, {}, &Row::value);
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i] = keyed[i].index;
}

std::vector<std::uint32_t> shownRows(const FileItems &items, const ItemFilter &filter)
{
    std::vector<std::uint32_t> rows;
    rows.reserve(items.size());
    for (std::uint32_t i = 0; i < items.size(); ++i) {
        if (!filter || filter(items[i]))
            rows.push_back(i);
    }
    return rows;
}

} // namespace

bool DisplayedItems::hasSameRows(const DisplayedItems &other) const
{
    if (size() != other.size())
        return false;
    if (sharesItems(other))
        return empty() || *m_rows == *other.m_rows;
    for (std::size_t row = 0; row < size(); ++row) {
        if (!(*this)[row].sameEntry(other[row]))
            return false;
    }
    return true;
}

SortOrder orderBy(SortKey key, SortDirection direction)
{
    if (key == SortKey::Name)
        return {{key, direction}};
    return {{key, direction}, {SortKey::Name, SortDirection::Ascending}};
}

bool sortsBySize(const SortOrder &order)
{
    return !order.empty() && order.front().key == SortKey::Size;
/// The direction of the criterion at `place` once `key` is chosen for it.
SortDirection directionChosen(const SortOrder &now, std::size_t place, SortKey key)
{
    const SortDirection first = firstDirection(key);
    if (place >= now.size() || now[place].key != key || now[place].direction != first)
        return first;
    return first == SortDirection::Ascending ? SortDirection::Descending : SortDirection::Ascending;
}

}

DisplayedItems displayed(const FileItems &items, const DisplayOptions &options)
{
    std::vector<std::uint32_t> rows = shownRows(items, options.filter);
    // Apply the last criterion first: stable sorts preserve earlier ones among equal rows.
    for (const auto &comparator : std::views::reverse(options.order))
        sortBy(rows, columnOf(items, comparator.key), comparator.direction);
    if (sortsBySize(options.order))
        sortBy(rows, knownSizes(items, options.folderSize), options.order.front().direction);
    std::ranges::stable_partition(rows, [&items](std::uint32_t row) { return items[row].isFolder; });
    return {items, std::move(rows)};
}

} // namespace brellin
SortDirection firstDirection(SortKey key)
{
    const bool descending = key == SortKey::Size || key == SortKey::Modified;
    return descending ? SortDirection::Descending : SortDirection::Ascending;
}

SortOrder chosenOrder(const SortOrder &now, SortKey key)
{
    return orderBy(key, directionChosen(now, 0, key));
}

SortOrder chosenSecond(const SortOrder &now, SortKey key)
{
    if (now.empty() || now.front().key == key)
        return chosenOrder(now, key);
    SortOrder order{now.front()};
    std::ranges::move(orderBy(key, directionChosen(now, 1, key)), std::back_inserter(order));
    return order;
}

