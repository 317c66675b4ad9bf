#pragma once

#include "Agent/Screens/RuleListModel.h"

#include <QStyledItemDelegate>

namespace brellin {

/// Paints a rule: whether it is enabled, its name and its action.
class RuleListRow : public QStyledItemDelegate {
    Q_OBJECT
public:
    RuleListRow(const RuleListModel &model, QObject *parent) : QStyledItemDelegate(parent), m_model(model) {}

    /// Whether a click at this position toggles the rule.
    static bool isOnTick(const QRect &row, QPoint place);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    const RuleListModel &m_model;
};

} // namespace brellin
