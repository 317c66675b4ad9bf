#pragma once

#include "ContentView/BrowserModel.h"

#include <QAbstractTableModel>
#include <QDate>
#include <QItemSelectionModel>

namespace brellin {

/// The columns of the details view, from left to right.
enum class Column { Name, Size, Modified, Kind, Tags };
inline constexpr int columnCount = 5;

/// The rows of a pane for Qt's views. Follows the pane's displayed items by the entries' identity, so that the selection,
/// the scroll position and an open editor stay where they were.
class ItemRows : public QAbstractTableModel {
    Q_OBJECT
public:
    ItemRows(BrowserModel &pane, FolderSizes &sizes, QObject *parent);

    const FileItem &item(int row) const { return m_shown[static_cast<std::size_t>(row)]; }
    const DisplayedItems &shown() const { return m_shown; }
    /// The row of an entry, -1 where it is not shown.
    int rowOf(const FileItem &wanted) const;
    int rowOf(const Location &entry) const;
    /// The text of the size column and whether it may be out of date.
    QString sizeTextOf(const FileItem &item) const;
    bool sizeIsStale(const FileItem &item) const;
    QDate today() const { return m_today; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction | Qt::MoveAction; }
    /// Renames.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

    /// Other rows are shown now, all at once (another folder).
    Q_SIGNAL void replaced();

private:
    /// What the rows are of.
    struct Source {
        Location folder;
        QString query;
        std::optional<QString> tag;

        bool operator==(const Source &) const = default;
    };

    Source source() const;
    void follow(const DisplayedItems &next);
    void refresh(const DisplayedItems &next);
    void rearrange(const DisplayedItems &next);
    void heardSizes(const std::vector<Location> &changed);

    BrowserModel &m_pane;
    FolderSizes &m_sizes;
    DisplayedItems m_shown;
    Source m_source;
    QDate m_today;
};

/// Keeps the pane's selection and that of its views the same, in both directions.
class SelectionLink : public QObject {
public:
    SelectionLink(BrowserModel &pane, ItemRows &rows, QItemSelectionModel &views);
    /// Tells the pane at once what is selected. To be called before anything is done with it: keys that come quickly arrive
    /// before the moment in which changes are passed on.
    void settle();

private:
    void fromViews();
    void fromPane();

    BrowserModel &m_pane;
    ItemRows &m_rows;
    QItemSelectionModel &m_views;
    bool m_linking = false;
    QTimer m_soon;
};

} // namespace brellin
