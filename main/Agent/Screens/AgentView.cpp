#include "Agent/Screens/AgentView.h"

#include "Agent/Screens/AgentSettingsSheet.h"
#include "Agent/Screens/CleanupPage.h"
#include "Agent/Screens/FolderField.h"
#include "Agent/Screens/GuidePage.h"
#include "Agent/Screens/HistoryPage.h"
#include "Agent/Screens/ProfileEditor.h"
#include "Agent/Screens/ProjectsPage.h"
#include "Agent/Screens/ProposalPreview.h"
#include "Agent/Screens/RuleEditor.h"
#include "Agent/Screens/RuleListSheet.h"
#include "Agent/Screens/StartPage.h"
#include "Look/Attention.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Runs/AgentError.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPointer>
#include <QStackedWidget>
#include <QTimer>
#include <QWindow>

#include <algorithm>

namespace brellin {

namespace {

const QString viewTitle = QStringLiteral("Aufräum-Agent");
const QString photosText = QStringLiteral("Fotos und Videos nach Urlauben, Orten, Monaten und Screenshots zu ordnen, "
                                          "lernt der Agent als Nächstes. Deine Bilder "
                                          "bleiben bis dahin, wo sie sind.");
const QString receiptsText = QStringLiteral(
    "Rechnungen und Zahlungsbelege aus deinen Mails abzulegen, lernt der Agent als Nächstes. Bis dahin liest er keine "
    "Mail.");
const QString recipesText =
    QStringLiteral("Rezepte aus Fotos und Screenshots zu sammeln, lernt der Agent zusammen mit den Fotos.");

/// Property that marks the editor of the agent's pending profile.
constexpr auto pendingMark = "editsPendingProfile";

bool anyWindowEditsPending()
{
    return std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget *window) {
        return std::ranges::any_of(window->findChildren<ProfileEditor *>(), [](const ProfileEditor *one) {
            return one->isVisible() && one->property(pendingMark).toBool();
        });
    });
}

} // namespace

AgentView::AgentView(const AgentPorts &ports, QWidget *parent)
    : QWidget(parent)
    , m_ports(ports)
    , m_pages(new QStackedWidget(this))
{
    setObjectName(QStringLiteral("agentView"));
    auto *const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(m_pages);
    buildStart();
    buildAreas();
    showStart();
    m_ports.agent.pendingProfile.observe(this, [this](const auto &pending) {
        if (pending)
            followPendingProfile();
        else // deferred: the editor that answered is still closing
            QTimer::singleShot(0, this, &AgentView::followPendingProfile);
    });
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &AgentView::followPendingProfile, Qt::QueuedConnection);
    m_ports.agent.proposals.observe(this, [this](const auto &) { tellAttention(); });
}

void AgentView::buildStart()
{
    m_start = new StartPage(m_ports, m_pages);
    m_pages->addWidget(m_start);
    connect(m_start, &StartPage::areaRequested, this, &AgentView::open);
    connect(m_start, &StartPage::sheetRequested, this, &AgentView::openSheet);
    connect(m_start, &StartPage::guideRequested, this, &AgentView::showGuide);
    connect(m_start, &StartPage::showRequested, this, &AgentView::showRequested);
    connect(m_start, &StartPage::scanRequested, this, &AgentView::scan);
    connect(m_start, &StartPage::analysisRequested, this, &AgentView::askForAnalysis);
}

void AgentView::buildAreas()
{
    auto *const cleanup = new CleanupPage(m_ports, m_pages);
    connect(cleanup, &CleanupPage::scanRequested, this, &AgentView::scan);
    connect(cleanup, &CleanupPage::analysisRequested, this, &AgentView::askForAnalysis);
    connect(cleanup, &CleanupPage::rulesRequested, this, [this] { openSheet(AgentSheet::CleanupRules); });
    connect(cleanup, &CleanupPage::handOverRequested, this, &AgentView::handOver);
    connect(cleanup, &CleanupPage::previewRequested, this, &AgentView::preview);
    connect(cleanup, &CleanupPage::showRequested, this, &AgentView::showRequested);
    addArea(AgentArea::Cleanup, cleanup);
    addArea(AgentArea::Photos,
            new ComingPage(title(AgentArea::Photos), QStringLiteral("photo.on.rectangle.angled"), photosText, m_pages));
    addArea(AgentArea::Receipts, new ComingPage(title(AgentArea::Receipts), QStringLiteral("doc.text.magnifyingglass"),
                                                receiptsText, m_pages));
    auto *const projects = new ProjectsPage(m_ports, m_pages);
    connect(projects, &ProjectsPage::showRequested, this, &AgentView::showRequested);
    connect(projects, &ProjectsPage::editRequested, this,
            [this](const FolderProfile &profile, ProjectsPage::ProfileState state) {
                const auto purpose = state == ProjectsPage::ProfileState::New ? ProfileEditor::Purpose::AddNew
                                                                              : ProfileEditor::Purpose::EditStored;
                const auto store = [this](const std::optional<FolderProfile> &edited) -> Result<void> {
                    return edited ? m_ports.agent.saveProfile(*edited) : Result<void>();
                };
                present(new ProfileEditor(m_ports, profile, purpose, store, this));
            });
    addArea(AgentArea::Projects, projects);
    auto *const history = new HistoryPage(m_ports, m_pages);
    connect(history, &HistoryPage::showRequested, this, &AgentView::showRequested);
    addArea(AgentArea::History, history);
}

void AgentView::addArea(AgentArea area, AgentPage *page)
{
    m_pages->addWidget(page);
    m_areas.emplace_back(area, page);
    connect(page, &AgentPage::backRequested, this, &AgentView::showStart);
}

void AgentView::show(QWidget *page, std::optional<AgentArea> area, const QString &title)
{
    m_area = area;
    m_pages->setCurrentWidget(page);
    const QString path = title.isEmpty() ? viewTitle : viewTitle + QStringLiteral(" › ") + title;
    tellAttention();
    if (path == m_path)
        return;
    m_path = path;
    Q_EMIT pathChanged(m_path);
}

void AgentView::showStart()
{
    show(m_start, std::nullopt, {});
}

void AgentView::open(AgentArea area)
{
    const auto found = std::ranges::find(m_areas, area, &std::pair<AgentArea, AgentPage *>::first);
    show(found->second, area, title(area));
}

void AgentView::showGuide()
{
    if (!m_guide) {
        m_guide = new GuidePage(m_pages);
        m_pages->addWidget(m_guide);
        connect(m_guide, &AgentPage::backRequested, this, &AgentView::showStart);
    }
    show(m_guide, std::nullopt, QStringLiteral("Anleitung"));
}

void AgentView::openSheet(AgentSheet sheet)
{
    switch (sheet) {
    case AgentSheet::CleanupRules: {
        auto *const rules = new RuleListSheet(m_ports, this);
        connect(rules, &RuleListSheet::editRequested, this, [this, list = QPointer(rules)](const CleanupRule &rule) {
            const auto store = [this, list](const CleanupRule &edited) {
                const Result<void> saved = m_ports.agent.saveRule(edited);
                if (saved && list)
                    list->select(edited.id);
                return saved;
            };
            present(new RuleEditor(m_ports, rule, store, this));
        });
        return present(rules);
    }
    case AgentSheet::Settings:
        return present(new AgentSettingsSheet(m_ports, this));
    case AgentSheet::ReceiptRules:
        return presentComing(sheet, QStringLiteral("doc.text.magnifyingglass"), receiptsText);
    case AgentSheet::Recipes:
        return presentComing(sheet, QStringLiteral("book"), recipesText);
    }
}

void AgentView::presentComing(AgentSheet sheet, const QString &symbol, const QString &text)
{
    auto *const frame = new SheetFrame(title(sheet), subtitle(sheet), {560, 420}, this);
    frame->content()->addWidget(new EmptyState(symbol, QStringLiteral("Diese Funktion kommt noch"), text, frame), 1);
    QPushButton *const done =
        makeButton(QStringLiteral("Fertig"), ButtonKind::Primary, QStringLiteral("sheetDone"), frame);
    frame->buttons()->addWidget(done);
    connect(done, &QPushButton::clicked, frame, [frame] { frame->close(); });
    present(frame);
}

void AgentView::present(SheetFrame *sheet)
{
    ++m_openSheets;
    tellAttention();
    connect(sheet, &SheetFrame::closed, this, [this] {
        --m_openSheets;
        tellAttention();
    });
    sheet->open();
}

void AgentView::scan()
{
    m_ports.agent.scan(CleanupAgent::Search::RulesAndDuplicates);
    open(AgentArea::Cleanup);
}

void AgentView::askForAnalysis()
{
    m_ports.askForFolder(this,
                         {.purpose = QStringLiteral("analyze"),
                          .title = QStringLiteral("Welchen Ordner aufräumen?"),
                          .start = m_ports.services.folders.home},
                         [this](const Location &folder) { analyze(folder); });
}

void AgentView::analyze(const Location &folder)
{
    if (m_ports.agent.running.get())
        return;
    open(AgentArea::Cleanup);
    m_ports.agent.analyze(folder);
}

void AgentView::handOver()
{
    m_ports.agent.handOverToClaude(m_ports.agent.listedFolder(), m_ports.workspace, m_ports.pasteboard);
}

void AgentView::preview(const QUuid &proposal)
{
    auto *const sheet = new ProposalPreview(m_ports, proposal, this);
    connect(sheet, &ProposalPreview::showRequested, this, &AgentView::showRequested);
    present(sheet);
}

/// Asks the user to confirm the pending profile before the analysis continues. Only the active window asks; if it
/// closes, another one does.
void AgentView::followPendingProfile()
{
    const std::optional<FolderProfile> &pending = m_ports.agent.pendingProfile.get();
    if (!pending && m_pendingEditor)
        m_pendingEditor->close();
    if (pending && isVisible() && attentionTo(*window()) != Attention::Elsewhere && !anyWindowEditsPending())
        editPendingProfile(*pending);
}

void AgentView::editPendingProfile(const FolderProfile &pending)
{
    const auto answer = [this](const std::optional<FolderProfile> &edited) -> Result<void> {
        CleanupAgent &agent = m_ports.agent;
        if (!edited)
            agent.cancelPendingProfile();
        else
            agent.confirmPendingProfile(*edited);
        if (!agent.pendingProfile.get())
            return {};
        return failure(agent.lastFailure().value_or(AgentError::alreadyWorking()));
    };
    m_pendingEditor = new ProfileEditor(m_ports, pending, ProfileEditor::Purpose::ConfirmDetected, answer, this);
    m_pendingEditor->setProperty(pendingMark, true);
    present(m_pendingEditor);
}

/// Keeps the timer from starting a scan while the user looks at proposals or has a sheet open.
void AgentView::tellAttention()
{
    const bool looksAtList = m_area == AgentArea::Cleanup && !m_ports.agent.proposals.get().empty();
    m_ports.agent.setAttended(*this, isVisible() && (looksAtList || m_openSheets > 0));
}

void AgentView::refreshThumbnails()
{
    update();
    for (QWidget *const child : findChildren<QWidget *>())
        child->update();
}

void AgentView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_ports.agent.setViewVisible(*this, true);
    tellAttention();
    followPendingProfile();
}

void AgentView::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_ports.agent.setViewVisible(*this, false);
    tellAttention();
}

void AgentView::keyPressEvent(QKeyEvent *event)
{
    const bool back = event->key() == Qt::Key_Escape || event->key() == Qt::Key_Back;
    if (back && m_pages->currentWidget() != m_start)
        showStart();
    else
        QWidget::keyPressEvent(event);
}

} // namespace brellin
