#pragma once

#include "Agent/CleanupAgent.h"

#include <QAbstractListModel>
#include <QByteArray>

#include <memory>

namespace brellin {

/// The proposals as one list: the head of each group, followed by its proposals. Follows the agent. Updates by
/// inserting and removing rows, so that current row and scroll position survive a new scan; after very large changes it
/// resets instead, and views find their rows by identity. A filter hides rows without changing ticks.
class ProposalModel : public QAbstractListModel {
    Q_OBJECT
public:
    ProposalModel(CleanupAgent &agent, Location home, QObject *parent);

    struct Row {
        QByteArray identity;
        std::optional<ProposalGroup> group;            ///< set for a head: the visible rows of its group
        std::shared_ptr<const AgentProposal> proposal; ///< set for all other rows
        bool isLast = false;                           ///< last row of its group
    };
    const Row &at(int row) const { return m_rows[static_cast<std::size_t>(row)]; }
    /// -1 if not visible.
    int rowOf(const QByteArray &identity) const;
    bool isTicked(const AgentProposal &proposal) const { return m_agent.chosen.get().contains(proposal.id); }
    /// Why it could not be executed; empty if it has not failed.
    QString failureOf(const AgentProposal &proposal) const;

    /// Shows only proposals with this text in their name, folders or reason.
    void setFilter(const QString &text);
    /// Toggles a proposal, or all visible ones of a group.
    void toggle(int row);
    /// All proposals that are not ticked, whether visible or not, and how many of them are visible.
    std::set<QUuid> unticked() const;
    std::size_t visibleUnticked() const;
    /// Number of ticked proposals that the filter hides.
    int hiddenTicked() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    /// A proposal of the complete list, visible or not.
    struct Listed {
        QByteArray identity;
        std::shared_ptr<const AgentProposal> proposal;
        QString searched; ///< text for the filter; built on first use
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
    QString m_filter; ///< normalised for comparison
    std::vector<Listed> m_listed;
    std::vector<Row> m_rows;
};

} // namespace brellin
