#pragma once

#include "Agent/Screens/AgentPorts.h"

#include <QWidget>

class QPushButton;

namespace brellin {

class ProposalModel;
class TextLabel;

/// The bar below the proposals: the size of the selection, and its actions.
class ProposalFooter : public QWidget {
    Q_OBJECT
public:
    ProposalFooter(const AgentPorts &ports, ProposalModel &model, QWidget *parent);

    Q_SIGNAL void handOverRequested();

private:
    void refresh();

    AgentPorts m_ports;
    ProposalModel &m_model;
    TextLabel *m_summary;
    QPushButton *m_handOver;
    QPushButton *m_discard;
    QPushButton *m_execute;
};

} // namespace brellin
