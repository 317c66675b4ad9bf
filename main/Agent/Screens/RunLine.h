#pragma once

#include "Agent/Screens/AgentPorts.h"

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

namespace brellin {

class ElidedLabel;

/// What the agent is doing, with the file at hand and a button that stops it; at rest, what came of the last thing.
class RunLine : public QWidget {
    Q_OBJECT
public:
    RunLine(CleanupAgent &agent, QWidget *parent);

private:
    void showState();
    void showProgress();

    CleanupAgent &m_agent;
    QLabel *m_symbol;
    ElidedLabel *m_status;
    ElidedLabel *m_detail;
    QProgressBar *m_bar;
    QPushButton *m_cancel;
};

} // namespace brellin
