#include "ContentView/ItemOrder.h"

#include "ContentView/NameOrder.h"

#include <QHash>

#include <algorithm>
#include <map>
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

template <class Date>
Column dateColumn(const FileItems &items, const Date &date)
{
    return numberColumn(items, [&date](const FileItem &item) { return date(item).time_since_epoch().count(); });
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
        return dateColumn(items, [](const FileItem &item) { return item.modified; });
    case SortKey::Kind:
        return textColumn(items, [](const FileItem &item) { return item.kind; });
    case SortKey::Tags:
        return textColumn(items, [](const FileItem &item) { return item.tags.join(u','); });
    case SortKey::Folder:
        return textColumn(items, [](const FileItem &item) { return shown(std::string_view(*item.folder)); });
    case SortKey::Created:
        return dateColumn(items, [](const FileItem &item) { return item.details.created; });
    case SortKey::Accessed:
        return dateColumn(items, [](const FileItem &item) { return item.details.accessed; });
    case SortKey::Owner:
        return textColumn(items, [](const FileItem &item) { return ownerName(item.details.owner); });
    case SortKey::Rights:
        return numberColumn(items, [](const FileItem &item) { return std::int64_t{item.details.mode}; });
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

/// Descending if the order by the same column is turned against its first direction.
SortDirection groupDirection(const DisplayOptions &options)
{
    static const std::map<GroupKey, SortKey> keys{{GroupKey::Kind, SortKey::Kind},
                                                  {GroupKey::Modified, SortKey::Modified},
                                                  {GroupKey::Size, SortKey::Size},
                                                  {GroupKey::Tags, SortKey::Tags}};
    const SortKey key = keys.at(options.group);
    const bool same = !options.order.empty() && options.order.front().key == key;
    const bool turned = same && options.order.front().direction != firstDirection(key);
    return turned ? SortDirection::Descending : SortDirection::Ascending;
}

std::vector<RowGroup> headings(const std::vector<std::uint32_t> &rows, const ItemGroups &groups)
{
    std::vector<RowGroup> found;
    for (std::uint32_t row = 0; row < rows.size(); ++row) {
        const std::uint64_t place = groups.places[rows[row]];
        if (row == 0 || place != groups.places[rows[row - 1]])
            found.push_back({row, groups.titles.at(place)});
    }
    return found;
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

/// The direction of the criterion at `place` once `key` is chosen for it.
SortDirection directionChosen(const SortOrder &now, std::size_t place, SortKey key)
{
    const SortDirection first = firstDirection(key);
    if (place >= now.size() || now[place].key != key || now[place].direction != first)
        return first;
    return first == SortDirection::Ascending ? SortDirection::Descending : SortDirection::Ascending;
}

} // namespace

bool DisplayedItems::hasSameRows(const DisplayedItems &other) const
{
    if (size() != other.size())
        return false;
    if (sharesItems(other))
        return empty() || (m_shown->rows == other.m_shown->rows && groups() == other.groups());
    for (std::size_t row = 0; row < size(); ++row) {
        if (!(*this)[row].sameEntry(other[row]))
            return false;
    }
    return groups() == other.groups();
}

const std::vector<RowGroup> &DisplayedItems::groups() const
{
    static const std::vector<RowGroup> none;
    return m_shown ? m_shown->groups : none;
}

SortOrder orderBy(SortKey key, SortDirection direction)
{
    if (key == SortKey::Name)
        return {{key, direction}};
    return {{key, direction}, {SortKey::Name, SortDirection::Ascending}};
}

SortDirection firstDirection(SortKey key)
{
    const bool descending =
        key == SortKey::Size || key == SortKey::Modified || key == SortKey::Created || key == SortKey::Accessed;
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

bool usesDetails(const SortOrder &order)
{
    return std::ranges::any_of(order, [](const SortComparator &one) {
        return one.key == SortKey::Created || one.key == SortKey::Accessed || one.key == SortKey::Owner ||
               one.key == SortKey::Rights;
    });
}

bool sortsBySize(const SortOrder &order)
{
    return !order.empty() && order.front().key == SortKey::Size;
}

DisplayedItems displayed(const FileItems &items, const DisplayOptions &options)
{
    std::vector<std::uint32_t> rows = shownRows(items, options.filter);
    // Apply the last criterion first: stable sorts preserve earlier ones among equal rows.
    for (const auto &comparator : std::views::reverse(options.order))
        sortBy(rows, columnOf(items, comparator.key), comparator.direction);
    if (sortsBySize(options.order))
        sortBy(rows, knownSizes(items, options.folderSize), options.order.front().direction);
    const bool grouped = options.group != GroupKey::None;
    const ItemGroups groups = grouped ? groupsOf(items, options.group, options.today) : ItemGroups();
    if (grouped)
        sortBy(rows, groups.places, groupDirection(options));
    std::ranges::stable_partition(rows, [&items](std::uint32_t row) { return items[row].isFolder; });
    std::vector<RowGroup> titled = grouped ? headings(rows, groups) : std::vector<RowGroup>();
    return {items, std::move(rows), std::move(titled)};
}

} // namespace brellin
