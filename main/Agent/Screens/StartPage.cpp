#include "Agent/Screens/StartPage.h"

#include "Agent/Screens/AgentCard.h"
#include "Agent/Screens/AgentTexts.h"
#include "Agent/Screens/DamageNotice.h"
#include "Agent/Screens/RunLine.h"
#include "Guard/GuardKeys.h"
#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/Labels.h"
#include "Look/Theme.h"
#include "Runs/RunKeys.h"

#include <QGridLayout>
#include <QScrollArea>

namespace brellin {

namespace {

const QString comesLater = QStringLiteral("Diese Funktion kommt noch");

QString word(const char16_t *text)
{
    return QString::fromUtf16(text);
}

} // namespace

StartPage::StartPage(const AgentPorts &ports, QWidget *parent)
    : QWidget(parent)
    , m_ports(ports)
    , m_subtitle(makeSecondary({}, this))
    , m_inner(new QWidget)
    , m_grid(new QGridLayout)
{
    auto *const area = new QScrollArea(this);
    area->setWidget(m_inner);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    area->viewport()->setAutoFillBackground(false);
    m_inner->setAutoFillBackground(false);
    auto *const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(area);
    auto *const column = new QVBoxLayout(m_inner);
    column->setContentsMargins(scaled(22), scaled(30), scaled(22), scaled(20));
    column->setSpacing(scaled(6));
    buildHead();
    auto *const damage = new QHBoxLayout;
    damage->setContentsMargins(shadowReach(), scaled(6), shadowReach(), 0);
    damage->addWidget(new DamageNotice(m_ports.agent, m_inner));
    column->addLayout(damage);
    buildCards();
    auto *const line = new QHBoxLayout;
    line->setContentsMargins(shadowReach(), 0, shadowReach(), 0);
    auto *const run = new RunLine(m_ports.agent, m_inner, RunLine::Beside::DamageNotice);
    connect(run, &RunLine::showRequested, this, &StartPage::showRequested);
    line->addWidget(run);
    column->addLayout(line);
    column->addStretch(1);

    m_ports.agent.proposals.observe(this, [this](const auto &) { showCounts(); });
    m_ports.agent.profiles.observe(this, [this](const auto &) { showCounts(); });
    m_ports.agent.history.observe(this, [this](const auto &) { showCounts(); });
    m_ports.agent.damaged.observe(this, [this](const auto &) { showCounts(); });
    m_ports.agent.lastRun.observe(this, [this](const auto &) { showCounts(); });
    m_ports.agent.running.observe(this, [this](bool) { showRunning(); });
    showCounts();
    showRunning();
}

void StartPage::buildHead()
{
    const auto button = [this](const QString &title, ButtonKind kind, const QString &name, const QString &symbol) {
        return makeButton(title, kind, name, m_inner, symbol);
    };
    auto *const settings = button(QStringLiteral("Einstellungen"), ButtonKind::Plain, QStringLiteral("agentSettings"),
                                  QStringLiteral("settings"));
    auto *const guide = button(QStringLiteral("Anleitung"), ButtonKind::Plain, QStringLiteral("agentGuide"),
                               QStringLiteral("circle-question-mark"));
    m_analyze = button(QStringLiteral("Ordner analysieren …"), ButtonKind::Usual, QStringLiteral("agentAnalyze"),
                       QStringLiteral("folder-search"));
    m_analyze->setToolTip(
        QStringLiteral("Einen bestimmten Ordner prüfen: Doppelte finden und lose Dateien sinnvoll einsortieren"));
    m_scan = button(QStringLiteral("Regeln prüfen"), ButtonKind::Primary, QStringLiteral("agentScan"),
                    QStringLiteral("play"));
    connect(settings, &QPushButton::clicked, this, [this] { Q_EMIT sheetRequested(AgentSheet::Settings); });
    connect(guide, &QPushButton::clicked, this, &StartPage::guideRequested);
    connect(m_analyze, &QPushButton::clicked, this, &StartPage::analysisRequested);
    connect(m_scan, &QPushButton::clicked, this, &StartPage::scanRequested);

    auto *const row = new QHBoxLayout;
    row->setContentsMargins(shadowReach(), 0, shadowReach(), 0);
    row->setSpacing(scaled(8));
    row->addWidget(m_subtitle, 1);
    for (QPushButton *const one : {settings, guide, m_analyze, m_scan})
        row->addWidget(one);
    auto *const title = makeTitle(QStringLiteral("Aufräum-Agent"), m_inner);
    title->setContentsMargins(shadowReach(), 0, 0, 0);
    auto *const column = static_cast<QVBoxLayout *>(m_inner->layout());
    column->addWidget(title);
    column->addLayout(row);
}

void StartPage::buildCards()
{
    const auto add = [this](const char16_t *symbol, const QString &title, const AgentCard::Noun &noun,
                            const char16_t *hint, const QString &name) {
        m_cards.push_back(new AgentCard(word(symbol), title, noun, word(hint), name, m_inner));
        return m_cards.back();
    };
    const auto addArea = [&](AgentArea area, const char16_t *symbol, const AgentCard::Noun &noun, const char16_t *hint,
                             const QString &name) {
        AgentCard *const card = add(symbol, title(area), noun, hint, name);
        connect(card, &AgentCard::clicked, this, [this, area] { Q_EMIT areaRequested(area); });
        return card;
    };
    m_cleanup = addArea(AgentArea::Cleanup, u"wand.and.sparkles", {word(u"Vorschlag"), word(u"Vorschläge")},
                        u"Downloads, Doppelte, lose Dateien", QStringLiteral("cardCleanup"));
    m_cleanup->addSettings(title(AgentSheet::CleanupRules), QStringLiteral("cardCleanupSettings"));
    connect(m_cleanup, &AgentCard::settingsRequested, this,
            [this] { Q_EMIT sheetRequested(AgentSheet::CleanupRules); });
    addArea(AgentArea::Photos, u"photo.on.rectangle.angled", {word(u"Gruppe"), word(u"Gruppen")},
            u"Urlaube, Alben, Screenshots", QStringLiteral("cardPhotos"))
        ->setNote(comesLater);
    AgentCard *const receipts =
        addArea(AgentArea::Receipts, u"doc.text.magnifyingglass", {word(u"Beleg"), word(u"Belege")},
                u"Rechnungen und Zahlungsbelege", QStringLiteral("cardReceipts"));
    receipts->setNote(comesLater);
    receipts->addSettings(title(AgentSheet::ReceiptRules), QStringLiteral("cardReceiptsSettings"));
    connect(receipts, &AgentCard::settingsRequested, this, [this] { Q_EMIT sheetRequested(AgentSheet::ReceiptRules); });
    AgentCard *const recipes =
        add(u"book", title(AgentSheet::Recipes), {word(u"Rezept gesammelt"), word(u"Rezepte gesammelt")},
            u"aus Fotos und Screenshots", QStringLiteral("cardRecipes"));
    recipes->setNote(comesLater);
    connect(recipes, &AgentCard::clicked, this, [this] { Q_EMIT sheetRequested(AgentSheet::Recipes); });
    m_projects = addArea(AgentArea::Projects, u"folder.badge.gearshape",
                         {word(u"geschütztes Projekt"), word(u"geschützte Projekte")},
                         u"Code-Ordner, die nur vorsichtig aufgeräumt werden", QStringLiteral("cardProjects"));
    m_history =
        addArea(AgentArea::History, u"clock.arrow.circlepath", {word(u"Aufräum-Aktion"), word(u"Aufräum-Aktionen")},
                u"alles lässt sich rückgängig machen", QStringLiteral("cardHistory"));
    m_grid->setSpacing(0);
    static_cast<QVBoxLayout *>(m_inner->layout())->addLayout(m_grid);
    arrangeCards();
}

void StartPage::arrangeCards()
{
    const int columns = std::clamp(width() / scaled(300), 1, 3);
    if (columns == m_columns)
        return;
    for (int column = 0; column < 3; ++column)
        m_grid->setColumnStretch(column, column < columns ? 1 : 0);
    for (AgentCard *const card : m_cards)
        m_grid->removeWidget(card);
    int place = 0;
    for (AgentCard *const card : m_cards) {
        m_grid->addWidget(card, place / columns, place % columns);
        ++place;
    }
    m_columns = columns;
}

void StartPage::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrangeCards();
}

void StartPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    showCounts(); // after midnight "heute" becomes "gestern"
}

void StartPage::showCounts()
{
    const CleanupAgent &agent = m_ports.agent;
    const Instant now = m_ports.services.clock.now();
    m_subtitle->setText(QStringLiteral("Nichts passiert ohne deinen Haken. ") + lastRunText(agent.lastRun.get(), now));
    m_cleanup->setValue(static_cast<int>(agent.proposals.get().size()));
    const auto known = [&](const QString &list, std::size_t size) {
        return isDamaged(agent, list) ? std::nullopt : std::optional(static_cast<int>(size));
    };
    m_projects->setValue(known(GuardKeys::profiles, agent.profiles.get().size()));
    const std::vector<JournalRun> &runs = agent.history.get();
    m_history->setValue(known(RunKeys::history, runs.size()));
    m_history->setNote(runs.empty() ? QString() : QStringLiteral("Letzter Lauf: ") + dayText(runs.front().date, now));
}

void StartPage::showRunning()
{
    const bool running = m_ports.agent.running.get();
    const QString working = QStringLiteral("Der Aufräum-Agent arbeitet gerade.");
    m_scan->setEnabled(!running);
    m_analyze->setEnabled(!running);
    m_scan->setToolTip(running ? working : QStringLiteral("Alle Regeln und die Suche nach Doppelten jetzt durchgehen"));
}

} // namespace brellin
