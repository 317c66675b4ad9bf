#pragma once

#include "Features/StorageOverview.h"

#include <QAbstractListModel>
#include <QColor>

namespace brellin {

/// The colour of an entry in treemap and list: files by type, folders by name.
QColor storageColor(const StorageEntry &entry);
/// „Urlaub Meran, 8,7 GB, 1.204 Dateien“
QString storageText(const StorageEntry &entry);

/// The entries of the folder on display as rows. The selection follows its entry while others overtake it in size.
class StorageRows : public QAbstractListModel {
    Q_OBJECT
public:
    /// The overview must outlive the rows.
    StorageRows(StorageOverview &overview, QObject *parent);

    const StorageEntry *entry(const QModelIndex &index) const;
    /// The row of an entry, or of the entry containing it; invalid if there is none.
    QModelIndex indexOf(const Location &location) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    void follow(const std::vector<StorageEntry> &next);

    std::vector<StorageEntry> m_entries;
};

} // namespace brellin
