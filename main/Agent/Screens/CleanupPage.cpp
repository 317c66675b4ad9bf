#include "Agent/Screens/CleanupPage.h"

#include "Agent/Screens/AgentArea.h"
#include "Agent/Screens/AgentTexts.h"
#include "Agent/Screens/ProposalFooter.h"
#include "Agent/Screens/ProposalList.h"
#include "Agent/Screens/RunLine.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QStackedWidget>

namespace brellin {

namespace {

const QString allTidy = QStringLiteral("Alles aufgeräumt");
const QString nothingYet = QStringLiteral("Keine Vorschläge.");
const QString howToBegin = QStringLiteral(
    "„Regeln prüfen“ schaut nur in die Ordner deiner Regeln (z. B. Downloads).\nUm einen bestimmten Ordner wie „Eigene "
    "Dateien“ aufzuräumen, klicke „Ordner analysieren …“.");
const QString nothingFits = QStringLiteral("Kein Vorschlag passt zum Filter.");

} // namespace

CleanupPage::CleanupPage(const AgentPorts &ports, QWidget *parent)
    : AgentPage(title(AgentArea::Cleanup), parent)
    , m_ports(ports)
{
    buildActions();
    buildBody();
    m_ports.agent.running.observe(this, [this](bool) { showRunning(); });
    m_ports.agent.status.observe(this, [this](const QString &) { showContent(); });
    m_ports.agent.leftNothing.observe(this, [this](bool) { showContent(); });
    const ProposalModel &model = m_list->proposals();
    connect(&model, &QAbstractItemModel::modelReset, this, &CleanupPage::showContent);
    connect(&model, &QAbstractItemModel::rowsInserted, this, &CleanupPage::showContent);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, &CleanupPage::showContent);
    showContent();
    showRunning();
}

void CleanupPage::buildActions()
{
    m_filter = new QLineEdit(this);
    m_filter->setObjectName(QStringLiteral("agentFilter"));
    m_filter->setPlaceholderText(QStringLiteral("Filtern"));
    m_filter->setAccessibleName(QStringLiteral("Vorschläge filtern"));
    m_filter->setClearButtonEnabled(true);
    m_filter->addAction(Symbols::icon(QStringLiteral("search"), Token::Tertiary), QLineEdit::LeadingPosition);
    m_filter->setFixedWidth(scaled(180));
    auto *const rules = new SymbolButton(QStringLiteral("sliders-horizontal"), title(AgentSheet::CleanupRules),
                                         QStringLiteral("agentRules"), this, Token::Secondary);
    m_analyze = makeButton(QStringLiteral("Ordner analysieren …"), ButtonKind::Usual, QStringLiteral("agentAnalyze"),
                           this, QStringLiteral("folder-search"));
    m_analyze->setToolTip(
        QStringLiteral("Einen bestimmten Ordner prüfen: Doppelte finden und lose Dateien sinnvoll einsortieren"));
    m_scan = makeButton(QStringLiteral("Regeln prüfen"), ButtonKind::Usual, QStringLiteral("agentScan"), this,
                        QStringLiteral("play"));
    actions()->addWidget(m_filter);
    actions()->addWidget(rules);
    actions()->addWidget(m_analyze);
    actions()->addWidget(m_scan);
    connect(rules, &QToolButton::clicked, this, &CleanupPage::rulesRequested);
    connect(m_analyze, &QPushButton::clicked, this, &CleanupPage::analysisRequested);
    connect(m_scan, &QPushButton::clicked, this, &CleanupPage::scanRequested);
}

void CleanupPage::buildBody()
{
    auto *const line = new QHBoxLayout;
    line->setContentsMargins(scaled(30), 0, scaled(30), 0);
    auto *const run = new RunLine(m_ports.agent, this);
    line->addWidget(run);
    body()->addLayout(line);
    connect(run, &RunLine::showRequested, this, &CleanupPage::showRequested);
    m_about = makeSecondary({}, this);
    m_about->setObjectName(QStringLiteral("agentListedFolder"));
    m_about->setContentsMargins(scaled(30), 0, scaled(30), 0);
    body()->insertWidget(0, m_about);
    m_content = new QStackedWidget(this);
    m_list = new ProposalList(m_ports, m_content);
    m_empty = new EmptyState(QStringLiteral("wand.and.sparkles"), nothingYet, howToBegin, m_content);
    m_empty->setObjectName(QStringLiteral("agentEmpty"));
    m_content->addWidget(m_list);
    m_content->addWidget(m_empty);
    auto *const list = new QHBoxLayout;
    list->setContentsMargins(scaled(16), 0, scaled(16), 0);
    list->addWidget(m_content);
    body()->addLayout(list, 1);
    m_footer = new ProposalFooter(m_ports, m_list->proposals(), this);
    body()->addWidget(m_footer);
    connect(m_footer, &ProposalFooter::handOverRequested, this, &CleanupPage::handOverRequested);
    connect(m_list, &ProposalList::previewRequested, this, &CleanupPage::previewRequested);
    connect(m_list, &ProposalList::showRequested, this, &CleanupPage::showRequested);
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_list->proposals().setFilter(text);
        showContent();
    });
}

void CleanupPage::showContent()
{
    const bool nothing = m_ports.agent.proposals.get().empty();
    const bool visible = m_list->proposals().rowCount() > 0;
    const std::optional<Location> &folder = m_ports.agent.listedFolder();
    m_about->setVisible(folder.has_value());
    m_about->setText(folder ? QStringLiteral("Ordner analysiert: ") + crumbText(*folder, m_ports.services.folders.home)
                            : QString());
    m_footer->setVisible(!nothing);
    m_filter->setVisible(!nothing);
    m_content->setCurrentWidget(visible ? static_cast<QWidget *>(m_list) : m_empty);
    if (visible)
        return;
    const bool tidy = nothing && m_ports.agent.leftNothing.get();
    m_empty->setSymbol(tidy      ? QStringLiteral("circle-check")
                       : nothing ? QStringLiteral("wand.and.sparkles")
                                 : QStringLiteral("search"),
                       tidy ? Token::Success : Token::Tertiary);
    m_empty->setTexts(tidy ? allTidy : nothing ? nothingYet : nothingFits, tidy || !nothing ? QString() : howToBegin);
}

void CleanupPage::showRunning()
{
    m_scan->setEnabled(!m_ports.agent.running.get());
    m_analyze->setEnabled(!m_ports.agent.running.get());
}

void CleanupPage::showEvent(QShowEvent *event)
{
    AgentPage::showEvent(event);
    if (!m_list->currentIndex().isValid() && m_list->model()->rowCount() > 0)
        m_list->setCurrentIndex(m_list->model()->index(0, 0));
    m_list->setFocus();
}

} // namespace brellin
