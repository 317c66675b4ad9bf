#include "Features/Screens/TrashRows.h"

#include "Base/German.h"
#include "Base/RecentDate.h"
#include "Features/Screens/DocumentPicture.h"
#include "Look/Theme.h"
#include "Places/Crumbs.h"

#include <QCollator>
#include <QIcon>

#include <algorithm>
#include <map>
#include <string>

namespace brellin {

namespace {

constexpr double iconSide = 18;

QIcon iconFor(const TrashItem &item)
{
    const double side = scaled(iconSide);
    if (item.folder)
        return QIcon(EntryIcons::folder(side, 2));
    const std::string name =
        item.entry.original.empty() ? item.entry.place.filename().native() : item.entry.original.filename().native();
    return QIcon(documentPicture(name, side, 2));
}

Instant now()
{
    return std::chrono::time_point_cast<Instant::duration>(std::chrono::system_clock::now());
}

const QCollator &nameOrder()
{
    static const QCollator collator = [] {
        QCollator made(german());
        made.setNumericMode(true);
        made.setCaseSensitivity(Qt::CaseInsensitive);
        return made;
    }();
    return collator;
}

} // namespace

TrashRows::TrashRows(TrashList &trash, const KnownFolders &folders, QObject *parent)
    : QAbstractTableModel(parent)
    , m_folders(folders)
    , m_items(trash.items.get())
{
    trash.items.observe(this, [this](const std::vector<TrashItem> &next) { follow(next); });
}

QString TrashRows::placeOf(const TrashItem &item) const
{
    return item.entry.original.empty() ? QStringLiteral("nicht bekannt")
                                       : wayTo(item.entry.original.parent_path(), m_folders);
}

void TrashRows::follow(const std::vector<TrashItem> &next)
{
    std::map<std::string, int> rows;
    for (std::size_t row = 0; row < next.size(); ++row)
        rows.emplace(next[row].entry.place.native(), static_cast<int>(row));
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex &index : before) {
        const auto found = rows.find(item(index).entry.place.native());
        after << (found == rows.end() ? QModelIndex() : createIndex(found->second, index.column()));
    }
    m_items = next;
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

int TrashRows::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

int TrashRows::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns;
}

QVariant TrashRows::data(const QModelIndex &index, int role) const
{
    const TrashItem &one = item(index);
    switch (role) {
    case Qt::DisplayRole:
        return text(one, index.column());
    case Qt::DecorationRole:
        return index.column() == Name ? QVariant(iconFor(one)) : QVariant();
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(int(index.column() == Size ? Qt::AlignRight : Qt::AlignLeft));
    case Qt::ToolTipRole:
        if (index.column() == Deleted && one.entry.deleted)
            return longDateTime(*one.entry.deleted);
        return index.column() == Place ? shown(one.entry.original.parent_path()) : shown(one.entry.original);
    case Qt::AccessibleTextRole:
        return QStringList{one.name, placeOf(one), text(one, Deleted), text(one, Size)}.join(QStringLiteral(", "));
    case SortKey:
        return sortKey(one, index.column());
    default:
        return {};
    }
}

QString TrashRows::text(const TrashItem &item, int column) const
{
    switch (column) {
    case Name:
        return item.name;
    case Place:
        return placeOf(item);
    case Deleted:
        return item.entry.deleted ? recentDate(*item.entry.deleted, now()) : QStringLiteral("–");
    default:
        return item.size ? sizeText(*item.size) : QStringLiteral("…");
    }
}

QVariant TrashRows::sortKey(const TrashItem &item, int column) const
{
    switch (column) {
    case Deleted:
        return item.entry.deleted ? qint64(item.entry.deleted->time_since_epoch().count()) : qint64(0);
    case Size:
        return qint64(item.size.value_or(-1));
    default:
        return text(item, column);
    }
}

QVariant TrashRows::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section >= columns)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(int((section == Size ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter));
    const QString titles[] = {QStringLiteral("Name"), QStringLiteral("Ursprünglicher Ort"), QStringLiteral("Gelöscht"),
                              QStringLiteral("Größe")};
    return role == Qt::DisplayRole ? QVariant(titles[section]) : QVariant();
}

TrashOrder::TrashOrder(TrashRows &rows, QObject *parent) : QSortFilterProxyModel(parent), m_rows(rows)
{
    setSourceModel(&rows);
    setSortRole(TrashRows::SortKey);
}

void TrashOrder::setWanted(const QString &text)
{
    m_wanted = folded(text.trimmed());
    invalidateFilter();
}

bool TrashOrder::filterAcceptsRow(int row, const QModelIndex &) const
{
    const TrashItem &item = m_rows.item(m_rows.index(row, 0));
    return m_wanted.isEmpty() || folded(item.name).contains(m_wanted) ||
           folded(m_rows.placeOf(item)).contains(m_wanted);
}

bool TrashOrder::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const QVariant a = left.data(TrashRows::SortKey);
    const QVariant b = right.data(TrashRows::SortKey);
    if (a.typeId() == QMetaType::QString)
        return nameOrder().compare(a.toString(), b.toString()) < 0;
    return a.toLongLong() < b.toLongLong();
}

} // namespace brellin
