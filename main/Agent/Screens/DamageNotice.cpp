#include "Agent/Screens/DamageNotice.h"

#include "Agent/AgentKeys.h"
#include "Guard/GuardKeys.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"
#include "Look/YesNoSheet.h"
#include "Runs/RunKeys.h"

#include <QHBoxLayout>
#include <QPainter>

#include <algorithm>
#include <map>

namespace brellin {

namespace {

/// What the damage prevents.
QString consequence(const std::vector<StoredCondition> &damaged)
{
    if (!agentMayAct(damaged))
        return QStringLiteral(
            "Bis das entschieden ist, prüft und räumt der Aufräum-Agent nichts. Rückgängig machen geht.");
    const bool begins = agentMayBegin(damaged).has_value();
    // The history tells where the agent has put files.
    const bool analyses = std::ranges::find(damaged, RunKeys::history, &StoredCondition::list) == damaged.end();
    if (!begins)
        return QStringLiteral("Bis das entschieden ist, beginnt der Aufräum-Agent nichts von selbst%1.")
            .arg(analyses ? QString() : QStringLiteral(" und analysiert keinen Ordner"));
    return analyses ? QStringLiteral("Was lesbar ist, wird benutzt.")
                    : QStringLiteral("Was lesbar ist, wird benutzt. Bis das entschieden ist, analysiert der "
                                     "Aufräum-Agent keinen Ordner.");
}

/// The list's name for users.
QString titleOf(const StoredCondition &list)
{
    static const std::map<QString, QString> titles{
        {AgentKeys::rules, QStringLiteral("Regeln")},
        {GuardKeys::profiles, QStringLiteral("Geschützte Projekte")},
        {AgentKeys::never, QStringLiteral("Was nicht mehr vorgeschlagen wird")},
        {AgentKeys::duplicateFolders, QStringLiteral("Ordner für die Suche nach Doppelten")},
        {RunKeys::history, QStringLiteral("Verlauf")},
        {QStringLiteral("settings"), QStringLiteral("Einstellungen")}};
    const auto title = titles.find(list.list);
    return title == titles.end() ? shownName(list.file) : title->second;
}

} // namespace

bool isDamaged(const CleanupAgent &agent, const QString &list)
{
    return std::ranges::any_of(agent.damaged.get(), [&](const StoredCondition &one) {
        return one.list == list && one.state != StoredState::Partly;
    });
}

DamageNotice::DamageNotice(CleanupAgent &agent, QWidget *parent)
    : QWidget(parent)
    , m_agent(agent)
    , m_column(new QVBoxLayout(this))
    , m_problem(makeBody({}, this))
{
    setObjectName(QStringLiteral("damageNotice"));
    m_column->setContentsMargins(scaled(14), scaled(10), scaled(14), scaled(10));
    m_column->setSpacing(scaled(8));
    m_problem->setToken(Token::Danger);
    m_problem->setObjectName(QStringLiteral("damageProblem"));
    m_problem->hide();
    m_column->addWidget(m_problem);
    m_agent.damaged.observe(this, [this](const auto &) { showDamage(); });
    showDamage();
}

void DamageNotice::showDamage()
{
    const std::vector<StoredCondition> &damaged = m_agent.damaged.get();
    if (m_rows) {
        m_rows->hide(); // a signal of one of its buttons may be running
        m_rows->deleteLater();
    }
    m_rows = new QWidget(this);
    auto *const column = new QVBoxLayout(m_rows);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(scaled(8));
    for (const StoredCondition &list : damaged)
        column->addWidget(rowOf(list));
    TextLabel *const meanwhile = makeSecondary(consequence(damaged), m_rows);
    meanwhile->setObjectName(QStringLiteral("damageConsequence"));
    column->addWidget(meanwhile);
    m_column->insertWidget(0, m_rows);
    m_problem->hide();
    setVisible(!damaged.empty());
}

QWidget *DamageNotice::rowOf(const StoredCondition &list)
{
    auto *const held = new QWidget(m_rows);
    auto *const row = new QHBoxLayout(held);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(scaled(8));
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addWidget(new TextLabel(titleOf(list), Token::Text, 1, QFont::DemiBold, held));
    TextLabel *const text = makeSecondary(list.text(), held);
    text->setObjectName(QStringLiteral("damageText"));
    text->setToolTip(shown(list.file));
    texts->addWidget(text);
    row->addLayout(texts, 1);
    if (list.hasLastGood) {
        QPushButton *const restore =
            makeButton(QStringLiteral("Letzte gute Fassung"), ButtonKind::Usual, QStringLiteral("damageRestore"), held);
        restore->setToolTip(QStringLiteral("Nimmt den Stand, der zuletzt gespeichert wurde. Die beschädigte Datei wird "
                                           "aufgehoben."));
        connect(restore, &QPushButton::clicked, this, [this, list] { tell(m_agent.restoreList(list.list)); });
        row->addWidget(restore, 0, Qt::AlignVCenter);
    }
    QPushButton *const fresh =
        makeButton(QStringLiteral("Neu beginnen …"), ButtonKind::Usual, QStringLiteral("damageBeginAnew"), held);
    connect(fresh, &QPushButton::clicked, this, [this, list] { askToBeginAnew(list); });
    row->addWidget(fresh, 0, Qt::AlignVCenter);
    return held;
}

void DamageNotice::askToBeginAnew(const StoredCondition &list)
{
    auto *const question = new YesNoSheet(
        QStringLiteral("Mit „%1“ neu beginnen?").arg(shownName(list.file)),
        QStringLiteral(
            "Was darin stand, gilt dann nicht mehr, auch kein Schutz, den du eingerichtet hattest. Die Datei "
            "selbst wird daneben aufgehoben."),
        QStringLiteral("Neu beginnen"), ButtonKind::Danger, window());
    question->setObjectName(QStringLiteral("damageQuestion"));
    connect(question, &YesNoSheet::accepted, this, [this, key = list.list] { tell(m_agent.beginListAnew(key)); });
    question->open();
}

void DamageNotice::tell(const Result<void> &done)
{
    m_problem->setText(done ? QString() : done.error().message);
    m_problem->setVisible(!done);
}

void DamageNotice::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(Token::WarningSoft));
    painter.drawRoundedRect(rect(), 8, 8);
}

} // namespace brellin
