#pragma once

#include "ContentView/BrowserModel.h"

#include <QAbstractTableModel>
#include <QDate>
#include <QItemSelectionModel>

namespace brellin {

/// Columns of the details view; settings hold their numbers.
enum class Column { Name, Size, Modified, Kind, Tags, Folder, Passage, Created, Accessed, Owner, Rights };
inline constexpr int columnCount = 11;
/// Nullopt if the rows cannot be sorted by the column. Otherwise both lists have the same order.
constexpr std::optional<SortKey> keyOf(Column column)
{
    if (column == Column::Passage)
        return std::nullopt;
    const int number = static_cast<int>(column);
    return static_cast<SortKey>(column < Column::Passage ? number : number - 1);
}
/// „Geändert“
QString titleOf(Column column);

/// Item model of a pane's displayed items. Updates match entries by path, so that selection, scroll position and an
/// open editor survive.
class ItemRows : public QAbstractTableModel {
    Q_OBJECT
public:
    ItemRows(BrowserModel &pane, FolderSizes &sizes, QObject *parent);

    const FileItem &item(int row) const { return m_shown[static_cast<std::size_t>(row)]; }
    const DisplayedItems &shown() const { return m_shown; }
    /// The entry's row, -1 if it is not shown.
    int rowOf(const FileItem &wanted) const;
    int rowOf(const Location &entry) const;
    /// Text of the size column, and whether a folder's size may be outdated.
    QString sizeTextOf(const FileItem &item) const;
    bool sizeIsStale(const FileItem &item) const;
    QDate today() const { return m_today; }
    /// The whole row for screen readers.
    QString spokenRow(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction | Qt::MoveAction; }
    /// Renames the entry.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

    /// Emitted when all rows were replaced at once, e.g. for another folder.
    Q_SIGNAL void replaced();

private:
    QString folderTextOf(const FileItem &item) const;
    QString passageOf(const FileItem &item) const;
    /// What the rows show; if it changes, all rows are replaced.
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
    void heardPassages();
    void heardSizes(const std::vector<Location> &changed);

    BrowserModel &m_pane;
    bool m_leaves = false; ///< the name editor is being left
    FolderSizes &m_sizes;
    DisplayedItems m_shown;
    Source m_source;
    QDate m_today;
};

/// Synchronises the pane's selection with that of its views.
class SelectionLink : public QObject {
public:
    SelectionLink(BrowserModel &pane, ItemRows &rows, QItemSelectionModel &views);
    /// Passes the views' selection on to the pane at once. Call before a command, since selection changes are otherwise
    /// passed on with a delay.
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
