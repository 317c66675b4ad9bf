#include "Agent/Screens/ProjectsPage.h"

#include "Agent/Analysis/ProtectedEntries.h"
#include "Agent/Screens/AgentArea.h"
#include "Agent/Screens/AgentTexts.h"
#include "Agent/Screens/DamageNotice.h"
#include "Agent/Screens/FolderField.h"
#include "Agent/Screens/NoticeBar.h"
#include "Base/AbandonablePool.h"
#include "Base/German.h"
#include "Guard/GuardKeys.h"
#include "Look/Buttons.h"
#include "Look/Cards.h"
#include "Look/EntryIcons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStackedWidget>

#include <algorithm>

namespace brellin {

ProjectsPage::ProjectsPage(const AgentPorts &ports, QWidget *parent)
    : AgentPage(title(AgentArea::Projects), parent)
    , m_ports(ports)
    , m_protect(makeButton(QStringLiteral("Ordner schützen …"), ButtonKind::Primary, QStringLiteral("agentProtect"),
                           this, QStringLiteral("shield-check")))
    , m_content(new QStackedWidget(this))
    , m_notice(new NoticeBar(QStringLiteral("Rückgängig"), QStringLiteral("profileRemoved"), this))
    , m_pool(abandonablePool())
{
    actions()->addWidget(m_protect);
    connect(m_protect, &QPushButton::clicked, this, [this] {
        m_ports.askForFolder(this,
                             {.purpose = QStringLiteral("protect"),
                              .title = QStringLiteral("Welcher Ordner soll geschützt werden?"),
                              .start = m_ports.services.folders.home},
                             [this](const Location &folder) { protect(folder); });
    });
    auto *const notice = new QHBoxLayout;
    notice->setContentsMargins(scaled(30), 0, scaled(30), 0);
    notice->addWidget(m_notice);
    body()->addLayout(notice);
    auto *const damage = new QHBoxLayout;
    damage->setContentsMargins(scaled(30), 0, scaled(30), 0);
    damage->addWidget(new DamageNotice(m_ports.agent, this));
    body()->addLayout(damage);
    connect(m_notice, &NoticeBar::clicked, this, &ProjectsPage::undoRemoval);
    auto *const list = new QWidget(m_content);
    auto *const column = new QVBoxLayout(list);
    column->setContentsMargins(0, 0, 0, 0);
    m_rows = addScrollingColumn(column, list, QStringLiteral("agentProjects"), 1000);
    m_rows->addStretch(1);
    m_content->addWidget(list);
    m_content->addWidget(new EmptyState(
        QStringLiteral("folder.badge.gearshape"), QStringLiteral("Noch keine Projekte"),
        QStringLiteral("Wenn du mit „Ordner analysieren …“ einen Software-Projektordner wählst, erkennt der Agent das, "
                       "schlägt vor, was geschützt werden muss, und fragt dich."),
        m_content));
    m_content->addWidget(new QWidget(m_content)); // shown while the list is damaged
    body()->addWidget(m_content, 1);
    m_ports.agent.profiles.observe(this, [this](const auto &) { refresh(); });
    m_ports.agent.damaged.observe(this, [this](const auto &) { refresh(); });
    refresh();
}

ProjectsPage::~ProjectsPage() = default;

void ProjectsPage::protect(const Location &folder)
{
    if (m_detection)
        return;
    if (!m_ports.services.locations.isAllowed(folder)) {
        m_removed.reset();
        return m_notice->tell(SystemLocations::message(), Token::Danger, Token::DangerSoft);
    }
    const std::vector<FolderProfile> &all = m_ports.agent.profiles.get();
    if (const auto known = std::ranges::find(all, folder, &FolderProfile::root); known != all.end())
        return Q_EMIT editRequested(*known, ProfileState::Stored);
    m_notice->tell({});
    m_protect->setEnabled(false);
    m_detection = std::make_unique<Job<FolderProfile>>();
    m_detection->start(
        *m_pool, [folder](JobControl &control) { return detectedProfile(folder, &control); },
        [this](const FolderProfile &found) {
            m_detection.reset();
            m_protect->setEnabled(true);
            Q_EMIT editRequested(found, ProfileState::New);
        });
}

void ProjectsPage::refresh()
{
    for (QWidget *const row : m_shown) {
        row->hide(); // its buttons refer to the old list
        row->deleteLater();
    }
    m_shown.clear();
    const std::vector<FolderProfile> &all = m_ports.agent.profiles.get();
    for (const FolderProfile &profile : all) {
        m_shown.push_back(rowFor(profile));
        m_rows->insertWidget(static_cast<int>(m_shown.size()) - 1, m_shown.back());
    }
    const bool unknown = isDamaged(m_ports.agent, GuardKeys::profiles);
    m_content->setCurrentIndex(unknown ? 2 : all.empty() ? 1 : 0);
    m_protect->setEnabled(!unknown && !m_detection);
    m_protect->setToolTip(unknown ? QStringLiteral("Erst muss entschieden sein, was aus der beschädigten Liste wird.")
                                  : QString());
}

QWidget *ProjectsPage::rowFor(const FolderProfile &profile)
{
    auto *const card = new Card(m_content);
    padCard(*card);
    card->setObjectName(QStringLiteral("agentProfile"));
    auto *const picture = new QLabel(card);
    picture->setPixmap(EntryIcons::folder(scaled(30), devicePixelRatioF()));
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(scaled(2));
    texts->addWidget(new TextLabel(profile.name, Token::Text, 1, QFont::DemiBold, card));
    texts->addWidget(
        new ElidedLabel(crumbText(profile.root(), m_ports.services.folders.home), Token::Secondary, 0.92, card));
    const auto entries = static_cast<qint64>(profile.protectedEntries.size());
    texts->addWidget(
        makeSecondary(counted(entries, QStringLiteral("geschützter Eintrag"), QStringLiteral("geschützte Einträge")) +
                          (profile.tidyAllowed ? QStringLiteral(" · der Rest wird aufgeräumt")
                                               : QStringLiteral(" · der Rest bleibt liegen")),
                      card));
    QPushButton *const edit =
        makeButton(QStringLiteral("Bearbeiten …"), ButtonKind::Usual, QStringLiteral("profileEdit"), card);
    edit->setAccessibleName(QStringLiteral("Schutz von „%1“ bearbeiten").arg(profile.name));
    auto *const reveal = new SymbolButton(QStringLiteral("folder-open"), QStringLiteral("Ordner zeigen"),
                                          QStringLiteral("profileReveal"), card, Token::Secondary);
    auto *const removal = new SymbolButton(QStringLiteral("trash-2"), QStringLiteral("Schutz aufheben"),
                                           QStringLiteral("profileRemove"), card, Token::Secondary);
    auto *const row = new QHBoxLayout;
    row->setSpacing(scaled(12));
    row->addWidget(picture);
    row->addLayout(texts, 1);
    row->addWidget(reveal);
    row->addWidget(removal);
    row->addWidget(edit);
    card->content()->addLayout(row);
    connect(edit, &QPushButton::clicked, this,
            [this, profile] { Q_EMIT editRequested(profile, ProfileState::Stored); });
    connect(reveal, &QToolButton::clicked, this, [this, profile] { Q_EMIT showRequested(profile.root()); });
    connect(removal, &QToolButton::clicked, this, [this, profile] { remove(profile); });
    return card;
}

void ProjectsPage::remove(const FolderProfile &profile)
{
    if (const Result<void> removed = m_ports.agent.removeProfile(profile.id); !removed)
        return m_notice->tell(removed.error().message, Token::Danger, Token::DangerSoft);
    m_removed = profile;
    m_notice->tell(QStringLiteral("„%1“ ist nicht mehr geschützt.").arg(profile.name));
}

void ProjectsPage::undoRemoval()
{
    if (m_removed) {
        const Result<void> stored = m_ports.agent.saveProfile(*m_removed);
        if (!stored)
            return m_notice->tell(stored.error().message, Token::Danger, Token::DangerSoft);
    }
    m_removed.reset();
    m_notice->tell({});
}

} // namespace brellin
