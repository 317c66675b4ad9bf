#pragma once

#include "FileOperations/BatchRename.h"

#include <QAbstractTableModel>

#include <memory>

namespace brellin {

/// The preview of a batch as a table of old and new names, one row per entry.
class BatchRenameRows : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Old, New, columns };
    enum Role {
        NoteRole = Qt::UserRole, ///< short reason why the name is invalid; empty if it is valid
        ChangesRole              ///< whether the name changes
    };

    BatchRenameRows(std::shared_ptr<BatchRename> batch, QObject *parent);

    /// The first row with a conflict; invalid if there is none.
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
