#pragma once

#include "Agent/Screens/AgentPorts.h"

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QProgressBar;
class QPushButton;

namespace brellin {

class ElidedLabel;

/// The current step with the file name and a cancel button; when idle, the result of the last operation, and what can
/// be done about it: undo a run and show its folders, bring back discarded proposals.
class RunLine : public QWidget {
    Q_OBJECT
public:
    /// What else is on the page: a damage notice already explains why the agent is idle.
    enum class Beside { Nothing, DamageNotice };
    RunLine(CleanupAgent &agent, QWidget *parent, Beside beside = Beside::Nothing);

    /// The user wants to see an entry of the run in its folder.
    Q_SIGNAL void showRequested(const brellin::Location &entry);

private:
    void buildAfterwards(QHBoxLayout &row);
    void showAfterwards();
    void undo();
    void chooseFolder();
    const JournalRun *executed() const;
    void showState();
    void showProgress();
    void showNotSearched();
    bool isToldBeside() const;

    CleanupAgent &m_agent;
    const Beside m_beside;
    QLabel *m_symbol;
    ElidedLabel *m_status;
    ElidedLabel *m_detail;
    QProgressBar *m_bar;
    QPushButton *m_cancel;
    QPushButton *m_undo = nullptr;
    QPushButton *m_bringBack = nullptr;
    QPushButton *m_folders = nullptr;
    QPushButton *m_details; ///< for folders that could not be searched
};

} // namespace brellin
