#pragma once

#include "Agent/Screens/AgentPorts.h"
#include "Look/Cards.h"

class QListWidget;
class QPushButton;

namespace brellin {

class SymbolButton;
class TextLabel;

/// One run of the history as a card: date, summary and undo button; its steps when expanded.
class RunRow : public Card {
    Q_OBJECT
public:
    RunRow(const AgentPorts &ports, const QUuid &run, QWidget *parent);

    void refresh(const JournalRun &run);

    Q_SIGNAL void showRequested(const brellin::Location &entry);

private:
    void buildHead();
    void toggle();
    void fillSteps();
    void showNotes();
    void showAftermath(const RunHistory::Aftermath &aftermath);

    AgentPorts m_ports;
    QUuid m_id;
    JournalRun m_run;
    SymbolButton *m_disclosure = nullptr;
    TextLabel *m_date = nullptr;
    TextLabel *m_summary = nullptr;
    TextLabel *m_undone = nullptr;
    TextLabel *m_interrupted = nullptr;
    TextLabel *m_missing = nullptr;
    TextLabel *m_remarks = nullptr;
    TextLabel *m_notUndone = nullptr;
    QPushButton *m_undo = nullptr;
    QPushButton *m_retry = nullptr; ///< for what was not restored
    QListWidget *m_steps = nullptr; ///< filled when first expanded
};

} // namespace brellin
