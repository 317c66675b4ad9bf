#include "FileOperations/Screens/BatchRenameRows.h"

#include <algorithm>
#include <utility>

namespace brellin {

namespace {

QString noteFor(BatchRenameRow::Conflict conflict)
{
    switch (conflict) {
    case BatchRenameRow::Conflict::None:
        return {};
    case BatchRenameRow::Conflict::InvalidName:
        return QStringLiteral("so nicht erlaubt");
    case BatchRenameRow::Conflict::TooLong:
        return QStringLiteral("zu lang");
    case BatchRenameRow::Conflict::Equal:
        return QStringLiteral("mehrfach");
    case BatchRenameRow::Conflict::Taken:
        return QStringLiteral("gibt es schon");
    case BatchRenameRow::Conflict::Twice:
        return QStringLiteral("zweimal ausgewählt");
    case BatchRenameRow::Conflict::Inside:
        return QStringLiteral("in einem der Ordner");
    }
    return {};
}

} // namespace

BatchRenameRows::BatchRenameRows(std::shared_ptr<BatchRename> batch, QObject *parent)
    : QAbstractTableModel(parent)
    , m_batch(std::move(batch))
{
    m_batch->preview.observe(this, [this](const BatchRenamePlan &) {
        if (rowCount() > 0)
            Q_EMIT dataChanged(index(0, Old), index(rowCount() - 1, New));
    });
}

QModelIndex BatchRenameRows::firstConflict() const
{
    const std::vector<BatchRenameRow> &rows = m_batch->preview.get().rows;
    const auto found = std::ranges::find_if(
        rows, [](const BatchRenameRow &row) { return row.conflict != BatchRenameRow::Conflict::None; });
    return found == rows.end() ? QModelIndex() : index(static_cast<int>(found - rows.begin()), Old);
}

int BatchRenameRows::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_batch->urls().size());
}

int BatchRenameRows::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns;
}

/// Null while names or dates are being read.
const BatchRenameRow *BatchRenameRows::planned(int row) const
{
    const std::vector<BatchRenameRow> &rows = m_batch->preview.get().rows;
    return std::cmp_less(row, rows.size()) ? &rows[static_cast<std::size_t>(row)] : nullptr;
}

QString BatchRenameRows::text(int row, int column) const
{
    if (column == Old)
        return shownName(m_batch->urls()[static_cast<std::size_t>(row)]);
    const BatchRenameRow *const line = planned(row);
    return line ? shown(std::string_view(line->name)) : QStringLiteral("…");
}

QString BatchRenameRows::note(int row) const
{
    const BatchRenameRow *const line = planned(row);
    return line ? noteFor(line->conflict) : QString();
}

QVariant BatchRenameRows::data(const QModelIndex &index, int role) const
{
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column());
    case Qt::ToolTipRole:
        return index.column() == Old ? shown(m_batch->urls()[static_cast<std::size_t>(row)]) : text(row, New);
    case Qt::AccessibleTextRole: {
        const QString spoken = QStringLiteral("%1 wird zu %2").arg(text(row, Old), text(row, New));
        return note(row).isEmpty() ? spoken : spoken + u": "_qs + note(row);
    }
    case NoteRole:
        return index.column() == New ? note(row) : QString();
    case ChangesRole:
        return planned(row) && planned(row)->changes();
    default:
        return {};
    }
}

QVariant BatchRenameRows::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == Old ? QStringLiteral("Bisher") : QStringLiteral("Neu");
}

} // namespace brellin
