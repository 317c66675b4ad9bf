#include "ContentView/Screens/ItemRows.h"

#include "ContentView/RowDifference.h"
#include "ContentView/Screens/FileDrop.h"
#include "ContentView/Screens/ItemTexts.h"
#include "FileOperations/ClipboardFiles.h"

#include <QHash>

namespace brellin {

namespace {

using RowsByPath = QHash<QByteArray, int>;

RowsByPath rowsByPath(const DisplayedItems &items)
{
    RowsByPath rows;
    rows.reserve(static_cast<qsizetype>(items.size()));
    for (std::size_t row = 0; row < items.size(); ++row)
        rows.insert(QByteArray::fromStdString(items[row].path()), static_cast<int>(row));
    return rows;
}

bool shareAnEntry(const DisplayedItems &a, const DisplayedItems &b)
{
    return !a.empty() && !b.empty() && *a[0].folder == *b[0].folder;
}

} // namespace

ItemRows::ItemRows(BrowserModel &pane, FolderSizes &sizes, QObject *parent)
    : QAbstractTableModel(parent)
    , m_pane(pane)
    , m_sizes(sizes)
    , m_shown(pane.displayedItems.get())
    , m_today(QDate::currentDate())
{
    pane.displayedItems.observe(this, [this](const DisplayedItems &next) { follow(next); });
    sizes.observe(this, [this](const std::vector<Location> &changed) { heardSizes(changed); });
}

void ItemRows::follow(const DisplayedItems &next)
{
    m_today = QDate::currentDate();
    if (!shareAnEntry(m_shown, next)) {
        beginResetModel();
        m_shown = next;
        endResetModel();
        Q_EMIT replaced();
        return;
    }
    const RowDifference difference = brellin::difference(m_shown, next);
    if (difference.removed.empty() && difference.inserted.empty() && !difference.reordered) {
        m_shown = next;
        for (const RowRange &range : difference.changed)
            Q_EMIT dataChanged(index(range.first, 0), index(range.first + range.count - 1, brellin::columnCount - 1));
        return;
    }
    rearrange(next);
}

/// Persistent indexes (the selection, the current row, an editor) are led to the rows where their entries are now.
void ItemRows::rearrange(const DisplayedItems &next)
{
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    std::optional<RowsByPath> rows;
    for (const QModelIndex &index : before) {
        const FileItem &entry = item(index.row());
        int row = index.row();
        if (static_cast<std::size_t>(row) >= next.size() || !next[static_cast<std::size_t>(row)].sameEntry(entry)) {
            if (!rows)
                rows = rowsByPath(next);
            row = rows->value(QByteArray::fromStdString(entry.path()), -1);
        }
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
    const std::string name = entry.filename().native();
    for (std::size_t row = 0; row < m_shown.size(); ++row)
        if (m_shown[row].nameBytes == name && m_shown[row].location() == entry)
            return static_cast<int>(row);
    return -1;
}

QString ItemRows::sizeTextOf(const FileItem &item) const
{
    return item.isFolder ? folderSizeText(m_sizes.size(item.location())) : item.sizeText();
}

bool ItemRows::sizeIsStale(const FileItem &item) const
{
    const std::optional<FolderSize> size = item.isFolder ? m_sizes.size(item.location()) : std::nullopt;
    return size && size->state != FolderSize::State::Current;
}

bool ItemRows::sizeIsCapped(const FileItem &item) const
{
    const std::optional<FolderSize> size = item.isFolder ? m_sizes.size(item.location()) : std::nullopt;
    return size && size->state == FolderSize::State::Capped;
}

void ItemRows::heardSizes(const std::vector<Location> &changed)
{
    if (m_shown.empty() || changed.empty())
        return;
    // Folders come first: only their rows are repainted.
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
    if (role == Qt::AccessibleTextRole)
        return spokenText(entry, sizeTextOf(entry), m_today);
    if (role == Qt::ToolTipRole)
        return index.column() == static_cast<int>(Column::Name) ? QVariant(entry.name()) : QVariant();
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    switch (static_cast<Column>(index.column())) {
    case Column::Name:
        return entry.name();
    case Column::Size:
        return sizeTextOf(entry);
    case Column::Modified:
        return shortDateText(entry.modified, m_today);
    case Column::Kind:
        return entry.kind;
    case Column::Tags:
        return entry.tags.join(QStringLiteral(", "));
    }
    return {};
}

QVariant ItemRows::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const QStringList titles{QStringLiteral("Name"), QStringLiteral("Größe"), QStringLiteral("Geändert"),
                                    QStringLiteral("Art"), QStringLiteral("Markierungen")};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section >= titles.size())
        return {};
    return titles.at(section);
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
    // Not within this call: the new listing would take the row from under the editor that is about to be closed.
    QMetaObject::invokeMethod(&m_pane, [pane = &m_pane] { pane->commitRename(); }, Qt::QueuedConnection);
    return true;
}

SelectionLink::SelectionLink(BrowserModel &pane, ItemRows &rows, QItemSelectionModel &views)
    : QObject(&views)
    , m_pane(pane)
    , m_rows(rows)
    , m_views(views)
{
    // Several changes of one click, or of a long rubber band, are passed on once.
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
    for (const QItemSelectionRange &range : m_views.selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            selected.insert(m_rows.item(row));
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
