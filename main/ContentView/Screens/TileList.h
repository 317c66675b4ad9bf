#pragma once

#include <QAccessibleWidget>

#include <map>

namespace brellin {

class IconsView;

/// What screen readers find in the icon view: a list with one item for each row, which tells the whole row. Qt would
/// offer a table with an item for each column of the model.
class TileList : public QAccessibleWidget {
public:
    explicit TileList(IconsView &view);
    ~TileList() override;
    /// Lets Qt use this for every icon view.
    static void install();

    int childCount() const override;
    QAccessibleInterface *child(int row) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

private:
    IconsView &m_view;
    mutable std::map<int, QAccessible::Id> m_items; ///< by row
};

} // namespace brellin
