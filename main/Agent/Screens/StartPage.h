#pragma once

#include "Agent/Screens/AgentArea.h"
#include "Agent/Screens/AgentPorts.h"

#include <QWidget>

class QGridLayout;
class QPushButton;

namespace brellin {

class AgentCard;
class TextLabel;

/// The agent's start page: cards with live numbers, and the agent's last action.
class StartPage : public QWidget {
    Q_OBJECT
public:
    StartPage(const AgentPorts &ports, QWidget *parent);

    Q_SIGNAL void areaRequested(brellin::AgentArea area);
    Q_SIGNAL void sheetRequested(brellin::AgentSheet sheet);
    Q_SIGNAL void guideRequested();
    Q_SIGNAL void scanRequested();
    Q_SIGNAL void analysisRequested();
    Q_SIGNAL void showRequested(const brellin::Location &entry);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void buildHead();
    void buildCards();
    void arrangeCards();
    void showCounts();
    void showRunning();

    AgentPorts m_ports;
    TextLabel *m_subtitle;
    QPushButton *m_scan = nullptr;
    QPushButton *m_analyze = nullptr;
    QWidget *m_inner;
    QGridLayout *m_grid;
    std::vector<AgentCard *> m_cards;
    AgentCard *m_cleanup = nullptr;
    AgentCard *m_projects = nullptr;
    AgentCard *m_history = nullptr;
    int m_columns = 0;
};

} // namespace brellin
