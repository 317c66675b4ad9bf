#pragma once

#include "FileOperations/BatchRename.h"

#include <QAbstractTableModel>

#include <memory>

namespace brellin {

/// The preview of a batch as lines of a table: the old name and the new one, as many as there are entries.
class BatchRenameRows : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Old, New, columns };
    enum Role {
        NoteRole = Qt::UserRole, ///< why this name cannot be given, in a few words; empty where it can
        ChangesRole              ///< whether the name changes
    };

    BatchRenameRows(std::shared_ptr<BatchRename> batch, QObject *parent);

    /// The first line with a conflict; invalid where there is none.
    QModelIndex firstConflict() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const BatchRenameRow *planned(int row) const;
    QString text(int row, int column) const;
    QString note(int row) const;

    const std::shared_ptr<BatchRename> m_batch;
};

} // namespace brellin
