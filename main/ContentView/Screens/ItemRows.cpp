#include "ContentView/Screens/ItemRows.h"

#include "ContentView/Screens/FileDrop.h"
#include "ContentView/Screens/ItemTexts.h"
#include "FileOperations/ClipboardFiles.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace brellin {

namespace {

/// Maps rows of the old list to rows of the new one in a single pass.
class RowLookup {
public:
    RowLookup(const DisplayedItems &before, const DisplayedItems &after) : m_before(before), m_after(after) {}

    void want(int row)
    {
        if (!m_rows.try_emplace(row, -1).second)
            return;
        const FileItem &entry = m_before[static_cast<std::size_t>(row)];
        if (static_cast<std::size_t>(row) < m_after.size() && m_after[static_cast<std::size_t>(row)].sameEntry(entry))
            m_rows[row] = row;
        else
            m_moved.emplace(entry.nameBytes, row);
    }
    void find()
    {
        for (std::size_t row = 0; row < m_after.size() && !m_moved.empty(); ++row) {
            const auto [first, last] = m_moved.equal_range(m_after[row].nameBytes);
            const auto found = std::find_if(first, last, [&](const auto &one) {
                return m_before[static_cast<std::size_t>(one.second)].sameEntry(m_after[row]);
            });
            if (found == last)
                continue;
            m_rows[found->second] = static_cast<int>(row);
            m_moved.erase(found);
        }
    }
    /// The new row; -1 if the entry is gone.
    int rowOf(int row) const { return m_rows.at(row); }

private:
    const DisplayedItems &m_before;
    const DisplayedItems &m_after;
    std::unordered_map<int, int> m_rows; ///< old row to new row
    std::unordered_multimap<std::string_view, int> m_moved;
};

} // namespace

QString titleOf(Column column)
{
    const std::optional<SortKey> key = keyOf(column);
    return key ? titleOf(*key) : QStringLiteral("Fundstelle");
}

ItemRows::ItemRows(BrowserModel &pane, FolderSizes &sizes, QObject *parent)
    : QAbstractTableModel(parent)
    , m_pane(pane)
    , m_sizes(sizes)
    , m_shown(pane.displayedItems.get())
    , m_source(source())
    , m_today(QDate::currentDate())
{
    pane.displayedItems.observe(this, [this](const DisplayedItems &next) { follow(next); });
    pane.passages.observe(this, [this](const Passages &) { heardPassages(); });
    sizes.observe(this, [this](const std::vector<Location> &changed) { heardSizes(changed); });
}

ItemRows::Source ItemRows::source() const
{
    return {m_pane.current.get(), m_pane.searching.get() ? m_pane.searchText.get().trimmed() : QString(),
            m_pane.tagFilter.get()};
}

void ItemRows::follow(const DisplayedItems &next)
{
    m_today = QDate::currentDate();
    const Source now = source();
    if (m_shown.empty() || next.empty() || now != m_source) {
        beginResetModel();
        m_shown = next;
        m_source = now;
        endResetModel();
        Q_EMIT replaced();
    } else if (m_shown.hasSameRows(next)) {
        refresh(next);
    } else {
        rearrange(next);
    }
}

/// Updates the same rows in place.
void ItemRows::refresh(const DisplayedItems &next)
{
    const DisplayedItems before = std::exchange(m_shown, next);
    if (before.sharesItems(next))
        return;
    int first = -1;
    int last = -1;
    for (int row = 0; row < rowCount(); ++row) {
        if (before[static_cast<std::size_t>(row)] == item(row))
            continue;
        first = first < 0 ? row : first;
        last = row;
    }
    if (first >= 0)
        Q_EMIT dataChanged(index(first, 0), index(last, brellin::columnCount - 1));
}

/// Moves persistent indexes (selection, current row, editor) to their entries' new rows.
void ItemRows::rearrange(const DisplayedItems &next)
{
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    RowLookup rows(m_shown, next);
    for (const QModelIndex &index : before)
        rows.want(index.row());
    rows.find();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex &index : before) {
        const int row = rows.rowOf(index.row());
        after.append(row < 0 ? QModelIndex() : createIndex(row, index.column()));
    }
    m_shown = next;
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

int ItemRows::rowOf(const FileItem &wanted) const
{
    for (std::size_t row = 0; row < m_shown.size(); ++row)
        if (m_shown[row].sameEntry(wanted))
            return static_cast<int>(row);
    return -1;
}

int ItemRows::rowOf(const Location &entry) const
{
    for (std::size_t row = 0; row < m_shown.size(); ++row)
        if (m_shown[row].isAt(entry.native()))
            return static_cast<int>(row);
    return -1;
}

QString ItemRows::sizeTextOf(const FileItem &item) const
{
    if (!item.isFolder)
        return item.sizeText();
    const Location folder = item.location();
    return m_sizes.calculating(folder) ? QStringLiteral("Zähle …") : folderSizeText(m_sizes.size(folder));
}

/// Relative to the folder of a search, „~/Bilder“ in the home folder, otherwise the whole path.
QString ItemRows::folderTextOf(const FileItem &item) const
{
    const Location folder = item.location().parent_path();
    const Place &now = m_pane.place.get();
    const bool found = now.kind == Place::Kind::Search && isAtOrBelow(folder, now.location);
    const Location above = found ? now.location : m_pane.home();
    if (!isAtOrBelow(folder, above))
        return brellin::shown(folder);
    const Location below = folder.lexically_relative(above);
    if (found)
        return below == "." ? shownName(above) : brellin::shown(below);
    return below == "." ? QStringLiteral("~") : QStringLiteral("~/") + brellin::shown(below);
}

/// Where the content of a search's match contains the text.
QString ItemRows::passageOf(const FileItem &item) const
{
    const Passages &passages = m_pane.passages.get();
    const auto found = passages.empty() ? passages.end() : passages.find(item.path());
    return found == passages.end() ? QString() : found->second;
}

QString ItemRows::spokenRow(int row) const
{
    const FileItem &entry = item(row);
    return spokenText(entry, sizeTextOf(entry), passageOf(entry), m_today);
}

void ItemRows::heardPassages()
{
    const int column = static_cast<int>(Column::Passage);
    if (!m_shown.empty())
        Q_EMIT dataChanged(index(0, column), index(rowCount() - 1, column), {Qt::DisplayRole});
}

bool ItemRows::sizeIsStale(const FileItem &item) const
{
    const std::optional<FolderSize> size = item.isFolder ? m_sizes.size(item.location()) : std::nullopt;
    return size && size->state != FolderSize::State::Current;
}

void ItemRows::heardSizes(const std::vector<Location> &changed)
{
    if (m_shown.empty() || changed.empty())
        return;
    // Folders come first, so only the leading rows can have changed.
    std::size_t folders = 0;
    while (folders < m_shown.size() && m_shown[folders].isFolder)
        ++folders;
    if (folders > 0)
        Q_EMIT dataChanged(index(0, static_cast<int>(Column::Size)),
                           index(static_cast<int>(folders) - 1, static_cast<int>(Column::Size)), {Qt::DisplayRole});
}

int ItemRows::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int ItemRows::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : brellin::columnCount;
}

QVariant ItemRows::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const FileItem &entry = item(index.row());
    const auto column = static_cast<Column>(index.column());
    if (role == Qt::ToolTipRole && column == Column::Passage)
        return passageOf(entry);
    if (role == Qt::ToolTipRole)
        return column == Column::Name ? QVariant(entry.name()) : QVariant();
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    switch (column) {
    case Column::Name:
        if (role == Qt::EditRole && m_pane.renameTarget.get() && m_pane.renameTarget.get()->sameEntry(entry))
            return m_pane.renameText.get();
        return entry.name();
    case Column::Size:
        return sizeTextOf(entry);
    case Column::Modified:
        return shortDateText(entry.modified, m_today);
    case Column::Kind:
        return entry.kind;
    case Column::Tags:
        return entry.tags.join(QStringLiteral(", "));
    case Column::Created:
        return shortDateText(entry.details.created, m_today);
    case Column::Accessed:
        return shortDateText(entry.details.accessed, m_today);
    case Column::Owner:
        return ownerName(entry.details.owner);
    case Column::Rights:
        return rightsText(entry);
    case Column::Folder:
        return folderTextOf(entry);
    case Column::Passage:
        return passageOf(entry);
    }
    return {};
}

QVariant ItemRows::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= brellin::columnCount)
        return {};
    return titleOf(static_cast<Column>(section));
}

Qt::ItemFlags ItemRows::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags usual =
        Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
    return index.column() == static_cast<int>(Column::Name) ? usual | Qt::ItemIsEditable : usual;
}

QStringList ItemRows::mimeTypes() const
{
    return {QString::fromLatin1(clipboardForms::uriList)};
}

QMimeData *ItemRows::mimeData(const QModelIndexList &indexes) const
{
    std::vector<Location> entries;
    for (const QModelIndex &index : indexes)
        if (index.column() == static_cast<int>(Column::Name))
            entries.push_back(item(index.row()).location());
    return dragData(entries);
}

bool ItemRows::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !index.isValid())
        return false;
    m_pane.setRenameText(value.toString());
    // Deferred: the new listing would remove the row while its editor is still closing. Once: editor and view both
    // submit a name whose row is left.
    if (!std::exchange(m_leaves, true))
        QTimer::singleShot(0, this, [this] {
            m_leaves = false;
            m_pane.leaveRename();
        });
    return true;
}

SelectionLink::SelectionLink(BrowserModel &pane, ItemRows &rows, QItemSelectionModel &views)
    : QObject(&views)
    , m_pane(pane)
    , m_rows(rows)
    , m_views(views)
{
    // Coalesces the many changes of one click or rubber band.
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &SelectionLink::fromViews);
    connect(&views, &QItemSelectionModel::selectionChanged, this, [this] {
        if (!m_linking)
            m_soon.start(0);
    });
    connect(&rows, &QAbstractItemModel::modelReset, this, &SelectionLink::fromPane);
    connect(&rows, &QAbstractItemModel::layoutChanged, this, &SelectionLink::fromPane);
    pane.selection.observe(this, [this](const Selection &) { fromPane(); });
}

void SelectionLink::settle()
{
    if (!m_soon.isActive())
        return;
    m_soon.stop();
    fromViews();
}

void SelectionLink::fromViews()
{
    Selection selected;
    const QItemSelection ranges = m_views.selection();
    std::size_t count = 0;
    for (const QItemSelectionRange &range : ranges)
        count += static_cast<std::size_t>(range.height());
    if (count == m_rows.shown().size()) {
        selected = Selection::ofAll(m_rows.shown());
    } else {
        selected.reserve(count);
        for (const QItemSelectionRange &range : ranges)
            for (int row = range.top(); row <= range.bottom(); ++row)
                selected.insert(m_rows.item(row));
    }
    m_linking = true;
    m_pane.setSelection(selected);
    m_linking = false;
}

void SelectionLink::fromPane()
{
    if (m_linking)
        return;
    m_soon.stop();
    const Selection &selected = m_pane.selection.get();
    QItemSelection ranges;
    const int rows = selected.empty() ? 0 : m_rows.rowCount();
    const int last = columnCount - 1;
    for (int row = 0; row < rows; ++row) {
        const int first = row;
        while (row < rows && selected.contains(m_rows.item(row)))
            ++row;
        if (row > first)
            ranges.append(QItemSelectionRange(m_rows.index(first, 0), m_rows.index(row - 1, last)));
    }
    m_linking = true;
    m_views.select(ranges, QItemSelectionModel::ClearAndSelect);
    if (!ranges.isEmpty() && !ranges.contains(m_views.currentIndex()))
        m_views.setCurrentIndex(ranges.first().topLeft(), QItemSelectionModel::NoUpdate);
    m_linking = false;
}

} // namespace brellin
