#pragma once

#include "Agent/Screens/AgentPorts.h"
#include "Agent/Screens/ProposalRow.h"

#include <QListView>

class QMenu;

namespace brellin {

/// The list of proposals, one card per group. Space ticks, the arrow keys move, Enter opens the preview, Del discards.
/// Every mouse action of a row is in the context menu too.
class ProposalList : public QListView {
    Q_OBJECT
public:
    ProposalList(const AgentPorts &ports, QWidget *parent);

    ProposalModel &proposals() { return m_model; }
    /// The proposal of the current row; nullopt for a group's head.
    std::optional<AgentProposal> current() const;

    Q_SIGNAL void previewRequested(const QUuid &proposal);
    Q_SIGNAL void showRequested(const brellin::Location &entry);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool viewportEvent(QEvent *event) override;

private:
    void noteRows();
    void findRows();
    void paintCards();
    void act(const QModelIndex &index, ProposalPart part);
    ProposalPart partAt(QPoint place) const;
    void setHovered(const QModelIndex &index, ProposalPart part);
    void fillMenu(QMenu &menu, int row);
    void openMenu(QPoint place);

    AgentPorts m_ports;
    ProposalModel m_model;
    ProposalRow m_row;
    /// Saved while the model resets: the identities of the current and the top row, and the offset of the top row.
    QByteArray m_current, m_top;
    int m_aboveTop = 0;
};

} // namespace brellin
