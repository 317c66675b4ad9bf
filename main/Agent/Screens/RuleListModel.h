#pragma once

#include "Agent/CleanupAgent.h"

#include <QAbstractListModel>

namespace brellin {

/// The rules in order of precedence. Check boxes enable rules; drag and drop moves them.
class RuleListModel : public QAbstractListModel {
    Q_OBJECT
public:
    RuleListModel(CleanupAgent &agent, Location home, QObject *parent);

    const CleanupRule &at(int row) const { return m_rules[static_cast<std::size_t>(row)]; }
    /// The row of a rule; -1 if it is not in the list.
    int rowOf(const QUuid &rule) const;
    QString summaryOf(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

    /// Emitted when a change could not be stored.
    Q_SIGNAL void failed(const QString &why);

private:
    CleanupAgent &m_agent;
    Location m_home;
    std::vector<CleanupRule> m_rules;
};

} // namespace brellin
