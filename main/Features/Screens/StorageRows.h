#pragma once

#include "Features/StorageOverview.h"

#include <QAbstractListModel>
#include <QColor>

namespace brellin {

/// What an entry is coloured with wherever space is shown: files by their kind, folders each by its name.
QColor storageColor(const StorageEntry &entry);
/// „Urlaub Meran, 8,7 GB, 1.204 Dateien“
QString storageText(const StorageEntry &entry);

/// The entries of the folder shown, as lines. A selection stays with its entry while others grow past it.
class StorageRows : public QAbstractListModel {
    Q_OBJECT
public:
    /// The overview outlives the rows.
    StorageRows(StorageOverview &overview, QObject *parent);

    const StorageEntry *entry(const QModelIndex &index) const;
    /// The line of an entry, or of the entry that holds it; invalid where there is none.
    QModelIndex indexOf(const Location &location) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    void follow(const std::vector<StorageEntry> &next);

    std::vector<StorageEntry> m_entries;
};

} // namespace brellin
