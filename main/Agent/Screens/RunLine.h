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
    /// What stands on the same page: a notice of damage says by itself why the agent does nothing.
    enum class Beside { Nothing, DamageNotice };
    RunLine(CleanupAgent &agent, QWidget *parent, Beside beside = Beside::Nothing);

private:
    void showState();
    void showProgress();
    bool isToldBeside() const;

    CleanupAgent &m_agent;
    const Beside m_beside;
    QLabel *m_symbol;
    ElidedLabel *m_status;
    ElidedLabel *m_detail;
    QProgressBar *m_bar;
    QPushButton *m_cancel;
};

} // namespace brellin
