#pragma once

#include "Agent/Screens/AgentPage.h"
#include "Agent/Screens/AgentPorts.h"

#include <set>

class QStackedWidget;
class QVBoxLayout;

namespace brellin {

class RunRow;
class TextLabel;

/// The history area: all runs with their steps, and undo.
class HistoryPage : public AgentPage {
    Q_OBJECT
public:
    HistoryPage(const AgentPorts &ports, QWidget *parent);

    Q_SIGNAL void showRequested(const brellin::Location &entry);

private:
    void refresh();
    RunRow *rowFor(const JournalRun &run);

    AgentPorts m_ports;
    QStackedWidget *m_content;
    QVBoxLayout *m_rows;
    TextLabel *m_dropped; ///< below the runs
    std::map<QUuid, RunRow *> m_shown;
};

} // namespace brellin
