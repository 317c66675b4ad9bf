#include "Agent/Screens/HistoryPage.h"

#include "Agent/Screens/AgentArea.h"
#include "Agent/Screens/RunLine.h"
#include "Agent/Screens/RunRow.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QStackedWidget>

#include <algorithm>

namespace brellin {

HistoryPage::HistoryPage(const AgentPorts &ports, QWidget *parent)
    : AgentPage(title(AgentArea::History), parent)
    , m_ports(ports)
    , m_content(new QStackedWidget(this))
{
    auto *const line = new QHBoxLayout;
    line->setContentsMargins(scaled(30), 0, scaled(30), 0);
    auto *const run = new RunLine(m_ports.agent, this);
    connect(run, &RunLine::showRequested, this, &HistoryPage::showRequested);
    line->addWidget(run);
    body()->addLayout(line);
    auto *const list = new QWidget(m_content);
    auto *const column = new QVBoxLayout(list);
    column->setContentsMargins(0, 0, 0, 0);
    m_rows = addScrollingColumn(column, list, QStringLiteral("agentHistory"), 1000);
    m_dropped = makeSecondary({}, list);
    m_dropped->setObjectName(QStringLiteral("droppedRuns"));
    m_dropped->setContentsMargins(scaled(14), scaled(12), scaled(14), 0);
    m_rows->addWidget(m_dropped);
    m_rows->addStretch(1);
    m_content->addWidget(list);
    m_content->addWidget(new EmptyState(
        QStringLiteral("clock.arrow.circlepath"), QStringLiteral("Noch nichts erledigt"),
        QStringLiteral("Hier erscheint jede Aufräum-Aktion – und lässt sich rückgängig machen."), m_content));
    body()->addWidget(m_content, 1);

    m_ports.agent.history.observe(this, [this](const auto &) { refresh(); });
    m_ports.agent.droppedRuns.observe(this, [this](const auto &) { refresh(); });
    m_ports.agent.aftermath.observe(this, [this](const auto &) { refresh(); });
    m_ports.agent.notUndone.observe(this, [this](const auto &) { refresh(); });
    m_ports.agent.interruptedRuns.observe(this, [this](const auto &) { refresh(); });
    m_ports.agent.running.observe(this, [this](bool) { refresh(); });
    refresh();
}

/// Keeps the rows of remaining runs, including whether they are expanded.
void HistoryPage::refresh()
{
    const std::vector<JournalRun> &runs = m_ports.agent.history.get();
    std::erase_if(m_shown, [&](const auto &one) {
        const bool gone = std::ranges::find(runs, one.first, &JournalRun::id) == runs.end();
        if (gone)
            one.second->deleteLater();
        return gone;
    });
    int place = 0;
    for (const JournalRun &run : runs) {
        RunRow *const row = rowFor(run);
        if (m_rows->indexOf(row) != place)
            m_rows->insertWidget(place, row);
        ++place;
    }
    const std::vector<DroppedRun> &dropped = m_ports.agent.droppedRuns.get();
    m_dropped->setText(textOf(dropped));
    m_dropped->setVisible(!dropped.empty());
    m_content->setCurrentIndex(runs.empty() && dropped.empty() ? 1 : 0);
}

RunRow *HistoryPage::rowFor(const JournalRun &run)
{
    RunRow *&row = m_shown[run.id];
    if (!row) {
        row = new RunRow(m_ports, run.id, this);
        connect(row, &RunRow::showRequested, this, &HistoryPage::showRequested);
    }
    row->refresh(run);
    return row;
}

} // namespace brellin
