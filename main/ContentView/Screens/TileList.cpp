#include "ContentView/Screens/TileList.h"

#include "ContentView/Screens/IconsView.h"

#include <QPointer>

#include <algorithm>

namespace brellin {

namespace {

/// The item at a row, whatever entry is there.
class Tile : public QAccessibleInterface {
public:
    Tile(IconsView &view, int row) : m_view(&view), m_row(row) {}

    bool isValid() const override { return m_view && index().isValid(); }
    QObject *object() const override { return nullptr; }
    QAccessibleInterface *parent() const override { return QAccessible::queryAccessibleInterface(m_view); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override {}
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name && isValid() ? m_view->spokenRow(m_row) : QString();
    }
    QRect rect() const override
    {
        const QRect place = isValid() ? m_view->visualRect(index()) : QRect();
        return place.isEmpty() ? place : place.translated(m_view->viewport()->mapToGlobal(QPoint(0, 0)));
    }
    QAccessible::State state() const override
    {
        QAccessible::State now;
        now.invalid = !isValid();
        now.selectable = now.focusable = true;
        now.selected = isValid() && m_view->selectionModel()->isSelected(index());
        now.focused = isValid() && m_view->hasFocus() && m_view->currentIndex() == index();
        now.offscreen = isValid() && !m_view->viewport()->rect().intersects(m_view->visualRect(index()));
        return now;
    }
    int row() const { return m_row; }

private:
    QModelIndex index() const { return m_view->model()->index(m_row, 0); }

    QPointer<IconsView> m_view;
    int m_row;
};

QAccessibleInterface *tileListOf(const QString &className, QObject *object)
{
    auto *const view = qobject_cast<IconsView *>(object);
    return view && className == QLatin1String(IconsView::staticMetaObject.className()) ? new TileList(*view) : nullptr;
}

} // namespace

TileList::TileList(IconsView &view) : QAccessibleWidget(&view, QAccessible::List, view.accessibleName()), m_view(view)
{
}

TileList::~TileList()
{
    for (const auto &[row, id] : m_items)
        QAccessible::deleteAccessibleInterface(id);
}

void TileList::install()
{
    static const bool once = [] {
        QAccessible::installFactory(tileListOf);
        return true;
    }();
    static_cast<void>(once);
}

int TileList::childCount() const
{
    return m_view.model()->rowCount();
}

QAccessibleInterface *TileList::child(int row) const
{
    if (row < 0 || row >= childCount())
        return nullptr;
    const auto known = m_items.find(row);
    const QAccessible::Id id =
        known != m_items.end()
            ? known->second
            : m_items.emplace(row, QAccessible::registerAccessibleInterface(new Tile(m_view, row))).first->second;
    return QAccessible::accessibleInterface(id);
}

QAccessibleInterface *TileList::childAt(int x, int y) const
{
    return child(m_view.indexAt(m_view.viewport()->mapFromGlobal(QPoint(x, y))).row());
}

QAccessibleInterface *TileList::focusChild() const
{
    return child(m_view.currentIndex().row());
}

int TileList::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *const tile = dynamic_cast<const Tile *>(child);
    return tile ? tile->row() : -1;
}

} // namespace brellin
