#pragma once

#include "Agent/Screens/AgentPorts.h"
#include "Agent/Screens/ProposalModel.h"

#include <QStyledItemDelegate>

namespace brellin {

/// The area of a row under the mouse.
enum class ProposalPart { Row, Tick, Preview, Discard, None };

/// Paints the rows of the proposal list and locates their areas.
class ProposalRow : public QStyledItemDelegate {
    Q_OBJECT
public:
    ProposalRow(const AgentPorts &ports, ProposalModel &model, QObject *parent);

    /// Sets the area under the mouse, which is painted as hovered.
    void setHovered(const QModelIndex &index, ProposalPart part);
    ProposalPart partAt(const QRect &row, int rowNumber, QPoint place) const;
    /// The tool tip of an area; may be empty.
    QString toolTip(int rowNumber, ProposalPart part) const;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /// Height of the space below the last row of a group.
    static int gap();

private:
    struct Places;
    static Places placesIn(const QRect &row, bool isLast);
    void paintGroup(QPainter &painter, const QRect &row, const ProposalGroup &group) const;
    void paintProposal(QPainter &painter, const AgentProposal &proposal, const Places &places) const;
    void paintRoad(QPainter &painter, const QRect &place, const AgentProposal &proposal) const;
    void paintName(QPainter &painter, const QRect &place, const AgentProposal &proposal) const;
    void paintReason(QPainter &painter, const QRect &place, const AgentProposal &proposal) const;
    void paintAction(QPainter &painter, const QRect &place, const QString &symbol, bool hovered) const;
    void paintPicture(QPainter &painter, const QRect &place, const AgentProposal &proposal) const;

    AgentPorts m_ports;
    ProposalModel &m_model;
    QPersistentModelIndex m_hovered;
    ProposalPart m_hoveredPart = ProposalPart::None;
};

} // namespace brellin
