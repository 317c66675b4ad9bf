#include "ContentView/Screens/NameDelegate.h"

#include "Base/German.h"
#include "Look/FieldReason.h"
#include "Look/Theme.h"

#include <QAbstractItemView>
#include <QDrag>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>

#include <algorithm>

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
    // Folders have no extension. Select later, since the view sets the text after this call.
    const qsizetype stem = item.isFolder ? item.name().size() : shown(stemOf(item.nameBytes)).size();
    QMetaObject::invokeMethod(
        field, [field, stem] { field->setSelection(0, static_cast<int>(stem)); }, Qt::QueuedConnection);
    connect(field, &QObject::destroyed, this, &NameDelegate::renameEnded);
    m_editor = field;
    m_reason = new FieldReason(field);
    return field;
}

/// Sets the text only once, so that a refresh of the row does not overwrite what was typed.
void NameDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (editor->property("filled").toBool())
        return;
    editor->setProperty("filled", true);
    QStyledItemDelegate::setEditorData(editor, index);
}

double NameDelegate::opacityOf(const FileItem &item) const
{
    if (!m_cut.empty() && m_cut.contains(item.location()))
        return 0.45;
    return item.isHidden ? 0.6 : 1;
}

void NameDelegate::refuseName(const QString &reason)
{
    if (!isEditing())
        return;
    m_reason->show(reason);
    m_editor->setFocus();
}

void NameDelegate::closeName()
{
    if (isEditing())
        Q_EMIT closeEditor(m_editor);
}

/// Instead of QStyledItemDelegate, which closes the editor whether or not the name is accepted.
bool NameDelegate::eventFilter(QObject *watched, QEvent *event)
{
    using Next = BrowserModel::RenameNext;
    if (watched != m_editor)
        return QStyledItemDelegate::eventFilter(watched, event);
    auto *const field = qobject_cast<QLineEdit *>(watched);
    if (!field)
        return false; // it is being destroyed
    if (event->type() == QEvent::KeyPress) {
        const auto *const typed = static_cast<QKeyEvent *>(event);
        const int key = typed->key();
        const bool tab = key == Qt::Key_Tab || key == Qt::Key_Backtab;
        const bool back = key == Qt::Key_Backtab || (typed->modifiers() & Qt::ShiftModifier);
        if (tab || key == Qt::Key_Return || key == Qt::Key_Enter) {
            Q_EMIT nameSubmitted(field->text(), !tab ? Next::None : back ? Next::Before : Next::After);
            return true;
        }
    }
    if (event->type() != QEvent::FocusOut)
        return QStyledItemDelegate::eventFilter(watched, event);
    const Qt::FocusReason why = static_cast<QFocusEvent *>(event)->reason();
    // These leave the focus where it was, as does a drag.
    const bool returns =
        why == Qt::PopupFocusReason || why == Qt::ActiveWindowFocusReason || why == Qt::MenuBarFocusReason;
    if (!returns && field->isVisible())
        Q_EMIT commitData(field);
    return false;
}

void NameDelegate::drag(QAbstractItemView &view, Qt::DropActions actions) const
{
    const QModelIndexList selected = view.selectionModel()->selectedIndexes();
    const QModelIndex current = view.currentIndex();
    QMimeData *const data = current.isValid() ? view.model()->mimeData(selected) : nullptr;
    if (!data)
        return;
    const auto count = std::ranges::count(selected, static_cast<int>(Column::Name), &QModelIndex::column);
    auto *const drag = new QDrag(&view);
    drag->setMimeData(data);
    drag->setPixmap(dragPicture(m_rows.item(current.row()), count, view.devicePixelRatioF()));
    // Beside the pointer, so that the drop target stays readable.
    drag->setHotSpot({-12, -6});
    drag->exec(actions, Qt::CopyAction);
}

QPixmap NameDelegate::dragPicture(const FileItem &item, qsizetype count, double pixelsPerPoint) const
{
    const QFont font = sizedFont(1);
    const QFontMetrics metrics(font);
    const QString name = metrics.elidedText(item.name(), Qt::ElideMiddle, scaled(220));
    const QString number = count > 1 ? german().toString(static_cast<qlonglong>(count)) : QString();
    const int high = scaled(32);
    const int gap = scaled(8);
    const int icon = scaled(20);
    const int badge = number.isEmpty() ? 0 : metrics.horizontalAdvance(number) + 2 * gap;
    const int wide = gap + icon + gap + metrics.horizontalAdvance(name) + gap + (badge > 0 ? badge + gap / 2 : 0);

    QPixmap picture(QSize(wide, high) * pixelsPerPoint);
    picture.setDevicePixelRatio(pixelsPerPoint);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(color(Token::Line));
    painter.setBrush(color(Token::Card));
    painter.drawRoundedRect(QRectF(0.5, 0.5, wide - 1, high - 1), 8, 8);
    m_pictures.paintSymbol(painter, QRectF(gap, (high - icon) / 2.0, icon, icon), item);
    painter.setFont(font);
    painter.setPen(color(Token::Text));
    painter.drawText(QRect(gap + icon + gap, 0, wide, high), Qt::AlignVCenter | Qt::AlignLeft, name);
    if (badge > 0) {
        const QRectF place(wide - badge - gap / 2.0, high / 2.0 - scaled(10), badge, scaled(20));
        painter.setPen(Qt::NoPen);
        painter.setBrush(color(Token::Accent));
        painter.drawRoundedRect(place, place.height() / 2, place.height() / 2);
        painter.setPen(color(Token::OnAccent));
        painter.drawText(place, Qt::AlignCenter, number);
    }
    return picture;
}

} // namespace brellin
