#pragma once

#include "Features/TrashList.h"
#include "Places/KnownFolders.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

namespace brellin {

/// The contents of the Trash as a table. The selection survives a re-read.
class TrashRows : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Name, Place, Deleted, Size, columns };
    /// The value a column is sorted by.
    enum Role { SortKey = Qt::UserRole };

    TrashRows(TrashList &trash, const KnownFolders &folders, QObject *parent);

    /// Where the entry came from, relative to the home folder.
    QString placeOf(const TrashItem &item) const;
    const TrashItem &item(const QModelIndex &index) const { return m_items[static_cast<std::size_t>(index.row())]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void follow(const std::vector<TrashItem> &next);
    QString text(const TrashItem &item, int column) const;
    QVariant sortKey(const TrashItem &item, int column) const;

    const KnownFolders &m_folders;
    std::vector<TrashItem> m_items;
};

/// Sorts rows naturally, and filters them by a text in name or location.
class TrashOrder : public QSortFilterProxyModel {
    Q_OBJECT
public:
    explicit TrashOrder(TrashRows &rows, QObject *parent);
    void setWanted(const QString &text);

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    TrashRows &m_rows;
    QString m_wanted; ///< folded
};

} // namespace brellin
