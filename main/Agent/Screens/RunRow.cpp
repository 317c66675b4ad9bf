#include "Agent/Screens/RunRow.h"

#include "Agent/Screens/AgentPage.h"
#include "Agent/Screens/AgentTexts.h"
#include "Base/German.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QListWidget>

namespace brellin {

namespace {

constexpr int mostVisibleSteps = 10;

const QString cutShort = QStringLiteral(
    "Dieser Lauf wurde unterbrochen (Absturz oder Stromausfall). Was bis dahin erledigt war, steht hier und lässt sich "
    "rückgängig machen.");

} // namespace

RunRow::RunRow(const AgentPorts &ports, const QUuid &run, QWidget *parent) : Card(parent), m_ports(ports), m_id(run)
{
    setObjectName(QStringLiteral("agentRun"));
    padCard(*this);
    content()->setSpacing(scaled(6));
    buildHead();
    m_interrupted = makeSecondary(cutShort, this);
    m_interrupted->setToken(Token::Warning);
    m_interrupted->setObjectName(QStringLiteral("runInterrupted"));
    m_missing = makeSecondary({}, this);
    m_missing->setToken(Token::Danger);
    m_missing->setObjectName(QStringLiteral("runNotRestored"));
    m_missing->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_remarks = makeSecondary({}, this);
    m_remarks->setObjectName(QStringLiteral("runRemarks"));
    m_remarks->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_notUndone = makeSecondary({}, this);
    m_notUndone->setToken(Token::Danger);
    m_notUndone->setObjectName(QStringLiteral("runNotUndone"));
    content()->addWidget(m_interrupted);
    content()->addWidget(m_notUndone);
    content()->addWidget(m_missing);
    content()->addWidget(m_remarks);
    m_steps = new QListWidget(this);
    m_steps->setObjectName(QStringLiteral("runSteps"));
    m_steps->setAccessibleName(QStringLiteral("Schritte"));
    m_steps->setUniformItemSizes(true);
    m_steps->setTextElideMode(Qt::ElideMiddle);
    m_steps->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_steps->hide();
    content()->addWidget(m_steps);
    connect(m_steps, &QListWidget::itemActivated, this, [this](QListWidgetItem *item) {
        const JournalStep &step = m_run.steps[static_cast<std::size_t>(m_steps->row(item))];
        Q_EMIT showRequested(m_run.undone || !step.to ? step.from : *step.to);
    });
}

void RunRow::buildHead()
{
    m_disclosure = new SymbolButton(QStringLiteral("chevron-right"), QStringLiteral("Schritte zeigen"),
                                    QStringLiteral("runDisclosure"), this, Token::Secondary);
    m_disclosure->setCheckable(true);
    m_date = new TextLabel({}, Token::Text, 1, QFont::DemiBold, this);
    m_summary = makeSecondary({}, this);
    m_summary->setObjectName(QStringLiteral("runSummary"));
    m_undone = new TextLabel(QStringLiteral("rückgängig gemacht"), Token::Success, 0.92, QFont::DemiBold, this);
    m_undone->setObjectName(QStringLiteral("runUndone"));
    m_undo = makeButton(QStringLiteral("Rückgängig"), ButtonKind::Usual, QStringLiteral("runUndo"), this,
                        QStringLiteral("undo-2"));
    m_retry = makeButton(QStringLiteral("Rest noch einmal versuchen"), ButtonKind::Usual, QStringLiteral("runRetry"),
                         this, QStringLiteral("undo-2"));
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(scaled(2));
    texts->addWidget(m_date);
    texts->addWidget(m_summary);
    auto *const row = new QHBoxLayout;
    row->setSpacing(scaled(8));
    row->addWidget(m_disclosure);
    row->addLayout(texts, 1);
    row->addWidget(m_undone);
    row->addWidget(m_undo);
    row->addWidget(m_retry);
    content()->addLayout(row);
    connect(m_disclosure, &QToolButton::toggled, this, &RunRow::toggle);
    for (const QPushButton *const button : {m_undo, m_retry})
        connect(button, &QPushButton::clicked, this, [this] { m_ports.agent.undo(m_id); });
}

void RunRow::refresh(const JournalRun &run)
{
    const bool stepsChanged = run.steps != m_run.steps;
    m_run = run;
    m_date->setText(dayText(run.date, m_ports.services.clock.now()));
    const auto steps = static_cast<qint64>(run.steps.size());
    m_summary->setText(counted(steps, QStringLiteral("Schritt"), QStringLiteral("Schritte")) +
                       (steps > 0 ? QStringLiteral(" · ") + runSummary(run) : QString()));
    m_undone->setVisible(run.undone);
    m_undo->setVisible(!run.undone);
    m_undo->setEnabled(!m_ports.agent.running.get());
    m_undo->setAccessibleName(QStringLiteral("Lauf vom %1 rückgängig machen").arg(m_date->text()));
    showNotes();
    if (stepsChanged && m_disclosure->isChecked())
        fillSteps();
}

void RunRow::showNotes()
{
    m_interrupted->setVisible(m_ports.agent.interruptedRuns.get().contains(m_id));
    const auto &reasons = m_ports.agent.notUndone.get();
    const auto reason = reasons.find(m_id);
    m_notUndone->setVisible(reason != reasons.end());
    m_notUndone->setText(reason != reasons.end() ? reason->second : QString());
    const auto &all = m_ports.agent.aftermath.get();
    const auto left = all.find(m_id);
    showAftermath(left == all.end() ? RunHistory::Aftermath() : left->second);
}

void RunRow::showAftermath(const RunHistory::Aftermath &aftermath)
{
    m_missing->setVisible(!aftermath.notRestored.empty());
    m_remarks->setVisible(!aftermath.remarks.isEmpty());
    m_remarks->setText(QStringLiteral("• ") + aftermath.remarks.join(QStringLiteral("\n• ")));
    m_retry->setVisible(m_run.undone && !aftermath.left.empty());
    m_retry->setEnabled(!m_ports.agent.running.get());
    m_retry->setAccessibleName(QStringLiteral("Rest des Laufs vom %1 noch einmal zurücklegen").arg(m_date->text()));
    QStringList names;
    for (const Location &one : aftermath.notRestored)
        names << QStringLiteral("• %1 (%2)")
                     .arg(shownName(one), crumbText(one.parent_path(), m_ports.services.folders.home));
    m_missing->setText(QStringLiteral("Nicht zurückgelegt:\n") + names.join(u'\n'));
}

void RunRow::toggle()
{
    const bool opened = m_disclosure->isChecked();
    m_disclosure->setSymbol(opened ? QStringLiteral("chevron-down") : QStringLiteral("chevron-right"));
    m_disclosure->setToolTip(opened ? QStringLiteral("Schritte ausblenden") : QStringLiteral("Schritte zeigen"));
    if (opened)
        fillSteps();
    m_steps->setVisible(opened);
}

void RunRow::fillSteps()
{
    m_steps->clear();
    const int height = QFontMetrics(sizedFont(1)).height() + scaled(8);
    for (const JournalStep &step : m_run.steps) {
        auto *const item = new QListWidgetItem(stepText(step, m_ports.services.folders.home), m_steps);
        item->setSizeHint({0, height});
        item->setToolTip(shown(step.from) + (step.to ? QStringLiteral("\n→ ") + shown(*step.to) : QString()));
    }
    m_steps->setFixedHeight(std::min(m_steps->count(), mostVisibleSteps) * height + scaled(6));
}

} // namespace brellin
