#include "Agent/Screens/ProposalFooter.h"

#include "Agent/Screens/ProposalModel.h"
#include "Base/German.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QHBoxLayout>

namespace brellin {

ProposalFooter::ProposalFooter(const AgentPorts &ports, ProposalModel &model, QWidget *parent)
    : QWidget(parent)
    , m_ports(ports)
    , m_model(model)
    , m_summary(makeBody({}, this))
    , m_handOver(makeButton(QStringLiteral("Prüfung an Claude übergeben"), ButtonKind::Plain,
                            QStringLiteral("agentHandOver"), this, QStringLiteral("clipboard-check")))
    , m_discard(makeButton(QStringLiteral("Abgewählte verwerfen"), ButtonKind::Usual,
                           QStringLiteral("agentDiscardUnticked"), this))
    , m_execute(makeButton(QStringLiteral("Ausgewählte ausführen"), ButtonKind::Primary, QStringLiteral("agentExecute"),
                           this))
{
    m_summary->setObjectName(QStringLiteral("agentChosenSummary"));
    m_summary->setToken(Token::Secondary);
    m_handOver->setToolTip(QStringLiteral("Erstellt einen Prüfbericht, kopiert eine Anfrage und öffnet Claude"));
    auto *const row = new QHBoxLayout(this);
    row->setContentsMargins(scaled(30), scaled(10), scaled(30), scaled(14));
    row->setSpacing(scaled(10));
    row->addWidget(m_summary, 1);
    row->addWidget(m_handOver);
    row->addWidget(m_discard);
    row->addWidget(m_execute);

    connect(m_handOver, &QPushButton::clicked, this, &ProposalFooter::handOverRequested);
    connect(m_discard, &QPushButton::clicked, this, [this] {
        const std::set<QUuid> unticked = m_model.unticked();
        m_ports.agent.discard(unticked, unticked.size() - m_model.visibleUnticked());
    });
    connect(m_execute, &QPushButton::clicked, this, [this] { m_ports.agent.executeChosen(); });
    connect(&m_model, &QAbstractItemModel::dataChanged, this, &ProposalFooter::refresh);
    connect(&m_model, &QAbstractItemModel::modelReset, this, &ProposalFooter::refresh);
    connect(&m_model, &QAbstractItemModel::rowsRemoved, this, &ProposalFooter::refresh);
    m_ports.agent.groups.observe(this, [this](const auto &) { refresh(); });
    m_ports.agent.running.observe(this, [this](bool) { refresh(); });
    refresh();
}

void ProposalFooter::refresh()
{
    const CleanupAgent &agent = m_ports.agent;
    QString text = chosenSummary(agent.groups.get());
    if (const int hidden = m_model.hiddenTicked(); hidden > 0)
        text += QStringLiteral(" · davon %1 ausgeblendet").arg(german().toString(hidden));
    m_summary->setText(text);
    const bool idle = !agent.running.get();
    const QString working = QStringLiteral("Der Aufräum-Agent arbeitet gerade.");
    m_execute->setEnabled(idle && !agent.chosen.get().empty());
    m_execute->setToolTip(
        idle ? agent.chosen.get().empty() ? QStringLiteral("Kein Vorschlag ist ausgewählt.") : QString() : working);
    m_discard->setEnabled(idle && agent.chosen.get().size() < agent.proposals.get().size());
    m_discard->setToolTip(
        idle ? QStringLiteral("Nimmt die Vorschläge ohne Haken aus der Liste; mit den Dateien geschieht nichts.")
             : working);
    m_handOver->setEnabled(idle);
}

} // namespace brellin
