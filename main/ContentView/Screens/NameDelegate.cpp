#include "ContentView/Screens/NameDelegate.h"

#include <QLineEdit>

namespace brellin {

NameDelegate::NameDelegate(const ItemRows &rows, const EntryPictures &pictures, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_rows(rows)
    , m_pictures(pictures)
{
}

QWidget *NameDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &index) const
{
    const FileItem &item = m_rows.item(index.row());
    auto *const field = new QLineEdit(item.name(), parent);
    field->setObjectName(QStringLiteral("nameEditor"));
    field->setProperty("kind", QStringLiteral("row"));
    field->setAccessibleName(QStringLiteral("Neuer Name"));
    // A folder has no extension, whatever its name looks like. The selection is made once the view has filled the field in.
    const qsizetype stem = item.isFolder ? item.name().size() : shown(stemOf(item.nameBytes)).size();
    QMetaObject::invokeMethod(
        field, [field, stem] { field->setSelection(0, static_cast<int>(stem)); }, Qt::QueuedConnection);
    connect(field, &QObject::destroyed, this, &NameDelegate::renameEnded);
    return field;
}

/// Only once: a refresh of the row must not take back what was typed.
void NameDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (editor->property("filled").toBool())
        return;
    editor->setProperty("filled", true);
    QStyledItemDelegate::setEditorData(editor, index);
}

} // namespace brellin
