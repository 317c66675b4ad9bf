#pragma once

#include "Agent/Screens/AgentPorts.h"
#include "Look/SheetFrame.h"

namespace brellin {

class NoticeBar;

/// Details of one proposal: the file, its destination and the reason. For a duplicate shows both files side by side,
/// with the choice to keep the other one.
class ProposalPreview : public SheetFrame {
    Q_OBJECT
public:
    ProposalPreview(const AgentPorts &ports, const QUuid &proposal, QWidget *window);

    Q_SIGNAL void showRequested(const brellin::Location &entry);

private:
    const AgentProposal *proposal() const;
    void rebuild();
    QWidget *fileCard(const QString &head, const Location &entry, const std::optional<FileState> &seen);
    void buildButtons();

    AgentPorts m_ports;
    QUuid m_proposal;
    NoticeBar *m_problem;
    QWidget *m_shown = nullptr;
};

} // namespace brellin
