#pragma once

#include "Agent/CleanupAgent.h"

#include <QAbstractListModel>
#include <QByteArray>

#include <memory>

namespace brellin {

/// The proposals as one list: each group's head, then its proposals. Follows the agent; rows that stay keep their place, so
/// that the current row and the scroll position survive a new scan; where very much changes at once the model is reset
/// instead, and whoever shows it finds its rows again by their identities. A filter hides rows and changes no tick.
class ProposalModel : public QAbstractListModel {
    Q_OBJECT
public:
    ProposalModel(CleanupAgent &agent, Location home, QObject *parent);

    struct Row {
        QByteArray identity;
        std::optional<ProposalGroup> group;            ///< of a head: what is visible of the group
        std::shared_ptr<const AgentProposal> proposal; ///< of any other row
        bool isLast = false;                           ///< of its group
    };
    const Row &at(int row) const { return m_rows[static_cast<std::size_t>(row)]; }
    /// -1: not visible.
    int rowOf(const QByteArray &identity) const;
    bool isTicked(const AgentProposal &proposal) const { return m_agent.chosen.get().contains(proposal.id); }
    /// Why it could not be carried out; empty: nobody has tried, or it is done.
    QString failureOf(const AgentProposal &proposal) const;

    /// Shows what holds this text in its name, its folders or its reason.
    void setFilter(const QString &text);
    bool isFiltered() const { return !m_filter.isEmpty(); }
    /// Ticks a proposal, or the visible ones of a group.
    void toggle(int row);
    /// What is visible and not ticked.
    std::set<QUuid> visibleUnticked() const;
    /// How many ticked proposals the filter hides.
    int hiddenTicked() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    /// A proposal of the whole list, visible or not.
    struct Listed {
        QByteArray identity;
        std::shared_ptr<const AgentProposal> proposal;
        QString searched; ///< what a filter looks at; made for the first one
    };

    void takeList();
    bool passes(Listed &one) const;
    std::vector<Row> rowsNow();
    void refresh();
    bool canBeMended(const std::vector<Row> &next) const;
    void removeMissing(const std::vector<Row> &next);
    void insertNew(const std::vector<Row> &next);
    void refreshTicks();
    void changed();

    CleanupAgent &m_agent;
    Location m_home;
    QString m_filter; ///< in the form in which names are compared
    std::vector<Listed> m_listed;
    std::vector<Row> m_rows;
};

} // namespace brellin
