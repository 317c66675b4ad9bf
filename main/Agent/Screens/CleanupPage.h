#pragma once

#include "Agent/Screens/AgentPage.h"
#include "Agent/Screens/AgentPorts.h"

class QLineEdit;
class QPushButton;
class QStackedWidget;

namespace brellin {

class EmptyState;
class ProposalFooter;
class ProposalList;
class TextLabel;

/// The cleanup area: the proposals with their reasons, and the actions for them.
class CleanupPage : public AgentPage {
    Q_OBJECT
public:
    CleanupPage(const AgentPorts &ports, QWidget *parent);

    Q_SIGNAL void scanRequested();
    Q_SIGNAL void analysisRequested();
    Q_SIGNAL void rulesRequested();
    Q_SIGNAL void handOverRequested();
    Q_SIGNAL void previewRequested(const QUuid &proposal);
    Q_SIGNAL void showRequested(const brellin::Location &entry);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void buildActions();
    void buildBody();
    void showContent();
    void showRunning();

    AgentPorts m_ports;
    QLineEdit *m_filter = nullptr;
    QPushButton *m_scan = nullptr;
    QPushButton *m_analyze = nullptr;
    QStackedWidget *m_content = nullptr;
    ProposalList *m_list = nullptr;
    ProposalFooter *m_footer = nullptr;
    EmptyState *m_empty = nullptr;
    TextLabel *m_about = nullptr; ///< names the analysed folder
};

} // namespace brellin
