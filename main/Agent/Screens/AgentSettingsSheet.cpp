#include "Agent/Screens/AgentSettingsSheet.h"

#include "Agent/Screens/AgentArea.h"
#include "Agent/Screens/AgentTexts.h"
#include "Agent/Screens/FolderField.h"
#include "Agent/Screens/NoticeBar.h"
#include "Base/Edition.h"
#include "Guard/PathTexts.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>

#include <algorithm>

namespace brellin {

namespace {

struct Interval {
    int hours;
    const char16_t *title;
};
constexpr auto intervals = std::to_array<Interval>(
    {{0, u"Nur von Hand"}, {1, u"Stündlich"}, {6, u"Alle 6 Stunden"}, {24, u"Täglich"}, {168, u"Wöchentlich"}});

void clear(QVBoxLayout *column)
{
    while (QLayoutItem *const item = column->takeAt(0)) {
        if (item->widget()) {
            item->widget()->hide();
            item->widget()->deleteLater();
        }
        delete item;
    }
}

QString kindText(AgentProposal::Kind kind)
{
    switch (kind) {
    case AgentProposal::Kind::Move:
        return QStringLiteral("verschieben");
    case AgentProposal::Kind::Copy:
        return QStringLiteral("kopieren");
    case AgentProposal::Kind::Rename:
        return QStringLiteral("umbenennen");
    case AgentProposal::Kind::Trash:
        return QStringLiteral("in den Papierkorb");
    }
    return {};
}

} // namespace

AgentSettingsSheet::AgentSettingsSheet(const AgentPorts &ports, QWidget *window)
    : SheetFrame(title(AgentSheet::Settings), subtitle(AgentSheet::Settings), {680, 660}, window)
    , m_ports(ports)
    , m_problem(new NoticeBar({}, QStringLiteral("settingsProblem"), this))
{
    setObjectName(QStringLiteral("agentSettingsSheet"));
    content()->addWidget(m_problem);
    buildSchedule();
    buildDuplicates();
    buildModel();
    buildNever();
    buildUpdates();
    content()->addStretch(1);
    QPushButton *const done =
        makeButton(QStringLiteral("Fertig"), ButtonKind::Primary, QStringLiteral("settingsDone"), this);
    buttons()->addWidget(done);
    connect(done, &QPushButton::clicked, this, [this] { close(); });
    m_ports.languageModel.refresh();
}

void AgentSettingsSheet::addHead(const QString &title)
{
    if (content()->count() > 1)
        content()->addSpacing(scaled(14));
    content()->addWidget(new TextLabel(title, Token::Text, 1.08, QFont::DemiBold, this));
}

void AgentSettingsSheet::buildSchedule()
{
    addHead(QStringLiteral("Zeitplan"));
    m_interval = new QComboBox(this);
    m_interval->setObjectName(QStringLiteral("settingsInterval"));
    m_interval->setAccessibleName(QStringLiteral("Automatisch prüfen"));
    for (const Interval &one : intervals)
        m_interval->addItem(QString::fromUtf16(one.title), one.hours);
    auto *const row = new QHBoxLayout;
    row->setSpacing(scaled(10));
    row->addWidget(new TextLabel(QStringLiteral("Automatisch prüfen"), Token::Text, 1, QFont::Normal, this));
    row->addWidget(m_interval);
    m_lastRun = new TextLabel({}, Token::Secondary, 0.92, QFont::Normal, this);
    row->addWidget(m_lastRun, 1);
    content()->addLayout(row);
    content()->addWidget(makeSecondary(
        QStringLiteral("Läuft, solange %1 geöffnet ist. Regeln ohne „automatisch“ erscheinen als Vorschlag zum "
                       "Bestätigen.")
            .arg(Edition::name()),
        this));
    showSchedule();
    connect(m_interval, &QComboBox::activated, this,
            [this] { tell(m_ports.agent.setIntervalHours(m_interval->currentData().toInt())); });
    m_ports.agent.intervalHours.observe(this, [this](int) { showSchedule(); });
    m_ports.agent.lastRun.observe(this, [this](const auto &) { showSchedule(); });
}

void AgentSettingsSheet::showSchedule()
{
    const int hours = m_ports.agent.intervalHours.get();
    // The command line may set an interval that the list does not offer.
    if (m_interval->findData(hours) < 0)
        m_interval->addItem(QStringLiteral("Alle %1 Stunden").arg(hours), hours);
    m_interval->setCurrentIndex(m_interval->findData(hours));
    m_lastRun->setText(lastRunText(m_ports.agent.lastRun.get(), m_ports.services.clock.now()));
}

QWidget *AgentSettingsSheet::rowWith(const QString &text, const QString &toolTip, QPushButton *button)
{
    auto *const held = new QWidget(this);
    auto *const row = new QHBoxLayout(held);
    row->setContentsMargins(0, 0, 0, 0);
    auto *const label = new ElidedLabel(text, Token::Text, 1, held);
    label->setToolTip(toolTip);
    row->addWidget(label, 1);
    row->addWidget(button);
    return held;
}

void AgentSettingsSheet::buildDuplicates()
{
    addHead(QStringLiteral("Doppelte"));
    content()->addWidget(makeHeading(QStringLiteral("Ordner nach Doppelten durchsuchen"), this));
    m_folders = new QVBoxLayout;
    m_folders->setSpacing(0);
    content()->addLayout(m_folders);
    QPushButton *const add = makeButton(QStringLiteral("Ordner hinzufügen …"), ButtonKind::Link,
                                        QStringLiteral("settingsAddFolder"), this, QStringLiteral("plus"));
    content()->addWidget(add, 0, Qt::AlignLeft);
    m_autoDuplicates = new QCheckBox(QStringLiteral("Doppelte automatisch in den Papierkorb (ohne Nachfrage)"), this);
    m_autoDuplicates->setObjectName(QStringLiteral("settingsAutoDuplicates"));
    m_autoDuplicates->setChecked(m_ports.agent.autoDuplicates.get());
    content()->addWidget(m_autoDuplicates);
    content()->addWidget(makeSecondary(
        QStringLiteral("Verglichen wird der Inhalt, nicht der Name. Die älteste Datei bleibt immer erhalten."), this));
    connect(add, &QPushButton::clicked, this, [this] {
        m_ports.askForFolder(this,
                             {.purpose = QStringLiteral("duplicates"),
                              .title = QStringLiteral("Ordner nach Doppelten durchsuchen"),
                              .start = m_ports.services.folders.home},
                             [this](const Location &folder) { addDuplicateFolder(folder); });
    });
    connect(m_autoDuplicates, &QCheckBox::clicked, this,
            [this](bool on) { tell(m_ports.agent.setAutoDuplicates(on)); });
    m_ports.agent.autoDuplicates.observe(this, [this](bool on) { m_autoDuplicates->setChecked(on); });
    m_ports.agent.duplicateFolders.observe(this, [this](const auto &) { showDuplicateFolders(); });
    showDuplicateFolders();
}

void AgentSettingsSheet::showDuplicateFolders()
{
    clear(m_folders);
    for (const Location &folder : m_ports.agent.duplicateFolders.get()) {
        const QString text = shownFromHome(folder, m_ports.services.folders.home);
        QPushButton *const removal =
            makeButton(QStringLiteral("Entfernen"), ButtonKind::Plain, QStringLiteral("settingsRemoveFolder"), this);
        removal->setAccessibleName(QStringLiteral("%1 nicht mehr durchsuchen").arg(text));
        connect(removal, &QPushButton::clicked, this, [this, folder] {
            std::vector<Location> left = m_ports.agent.duplicateFolders.get();
            std::erase(left, folder);
            setDuplicateFolders(left);
        });
        m_folders->addWidget(rowWith(text, shown(folder), removal));
    }
    if (m_ports.agent.duplicateFolders.get().empty())
        m_folders->addWidget(makeSecondary(QStringLiteral("Kein Ordner – nach Doppelten wird nicht gesucht."), this));
}

void AgentSettingsSheet::addDuplicateFolder(const Location &folder)
{
    if (!m_ports.services.locations.isAllowed(folder))
        return m_problem->tell(SystemLocations::message(), Token::Danger, Token::DangerSoft);
    std::vector<Location> folders = m_ports.agent.duplicateFolders.get();
    if (std::ranges::find(folders, folder) == folders.end())
        folders.push_back(folder);
    setDuplicateFolders(folders);
}

void AgentSettingsSheet::setDuplicateFolders(const std::vector<Location> &folders)
{
    tell(m_ports.agent.setDuplicateFolders(folders));
}

/// Reports a change that could not be stored; the controls show the stored value again.
void AgentSettingsSheet::tell(const Result<void> &stored)
{
    m_problem->tell(stored ? QString() : stored.error().message, Token::Danger, Token::DangerSoft);
    showSchedule();
    m_autoDuplicates->setChecked(m_ports.agent.autoDuplicates.get());
}

void AgentSettingsSheet::buildModel()
{
    addHead(QStringLiteral("KI-Status"));
    m_modelStatus = makeBody({}, this);
    m_modelStatus->setObjectName(QStringLiteral("modelStatus"));
    m_modelRefresh = makeButton(QStringLiteral("Aktualisieren"), ButtonKind::Plain, QStringLiteral("modelRefresh"),
                                this, QStringLiteral("refresh-cw"));
    auto *const row = new QHBoxLayout;
    row->addWidget(m_modelStatus, 1);
    row->addWidget(m_modelRefresh);
    content()->addLayout(row);
    m_foundModels = new QVBoxLayout;
    content()->addLayout(m_foundModels);
    m_modelHint = makeSecondary({}, this);
    m_modelHint->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    content()->addWidget(m_modelHint);
    m_modelAddress = new QLineEdit(this);
    m_modelAddress->setObjectName(QStringLiteral("modelAddress"));
    m_modelAddress->setAccessibleName(QStringLiteral("Adresse des Modell-Servers auf diesem Rechner"));
    m_modelAddress->setPlaceholderText(QStringLiteral("http://127.0.0.1:8080"));
    QPushButton *const use =
        makeButton(QStringLiteral("Verwenden"), ButtonKind::Usual, QStringLiteral("modelUse"), this);
    m_modelForget =
        makeButton(QStringLiteral("Nicht mehr verwenden"), ButtonKind::Plain, QStringLiteral("modelForget"), this);
    auto *const address = new QHBoxLayout;
    address->setSpacing(scaled(8));
    address->addWidget(m_modelAddress, 1);
    address->addWidget(use);
    address->addWidget(m_modelForget);
    content()->addLayout(address);
    m_modelError = makeSecondary({}, this);
    m_modelError->setToken(Token::Danger);
    content()->addWidget(m_modelError);
    ModelSettings &model = m_ports.languageModel;
    connect(m_modelRefresh, &QPushButton::clicked, this, [&model] { model.refresh(); });
    connect(use, &QPushButton::clicked, this, [this, &model] { model.confirm(m_modelAddress->text().trimmed()); });
    connect(m_modelForget, &QPushButton::clicked, this, [&model] { model.forget(); });
    model.status.observe(this, [this](const auto &) { showModel(); });
    model.checking.observe(this, [this](const auto &) { showModel(); });
    model.endpoint.observe(this, [this](const auto &) { showModel(); });
    model.found.observe(this, [this](const auto &) { showModel(); });
    model.setupHint.observe(this, [this](const auto &) { showModel(); });
    model.error.observe(this, [this](const auto &) { showModel(); });
    showModel();
}

void AgentSettingsSheet::showModel()
{
    const ModelSettings &model = m_ports.languageModel;
    const bool checking = model.checking.get();
    m_modelStatus->setText(checking && model.status.get().isEmpty() ? QStringLiteral("Wird geprüft …")
                                                                    : model.status.get());
    m_modelRefresh->setEnabled(!checking);
    const QString endpoint = model.endpoint.get();
    m_modelForget->setVisible(!endpoint.isEmpty());
    if (!endpoint.isEmpty() && m_modelAddress->text().isEmpty())
        m_modelAddress->setText(endpoint);
    m_modelHint->setText(model.setupHint.get());
    m_modelHint->setVisible(!model.setupHint.get().isEmpty());
    m_modelError->setText(model.error.get());
    m_modelError->setVisible(!model.error.get().isEmpty());
    clear(m_foundModels);
    for (const FoundModelServer &server : model.found.get()) {
        const QString address = server.endpoint.text();
        QPushButton *const use =
            makeButton(QStringLiteral("Verwenden"), ButtonKind::Usual, QStringLiteral("modelConfirm"), this);
        use->setAccessibleName(QStringLiteral("Modell-Server %1 verwenden").arg(address));
        connect(use, &QPushButton::clicked, this, [this, address] { m_ports.languageModel.confirm(address); });
        const QString name = server.model.isEmpty() ? QString() : QStringLiteral(" · ") + server.model;
        m_foundModels->addWidget(rowWith(QStringLiteral("Gefunden: %1%2").arg(address, name), address, use));
    }
}

void AgentSettingsSheet::buildNever()
{
    addHead(QStringLiteral("Nicht mehr vorschlagen"));
    m_never = new QVBoxLayout;
    m_never->setSpacing(0);
    content()->addLayout(m_never);
    m_ports.agent.never.observe(this, [this](const auto &) { showNever(); });
    showNever();
}

void AgentSettingsSheet::showNever()
{
    clear(m_never);
    const Location &home = m_ports.services.folders.home;
    for (const NeverProposed &one : m_ports.agent.never.get()) {
        QPushButton *const again =
            makeButton(QStringLiteral("Wieder vorschlagen"), ButtonKind::Plain, QStringLiteral("neverAgain"), this);
        again->setAccessibleName(QStringLiteral("%1 wieder vorschlagen").arg(shownName(one.source)));
        connect(again, &QPushButton::clicked, this, [this, one] { m_ports.agent.proposeAgain(one); });
        QString text = QStringLiteral("%1 – %2").arg(shownFromHome(one.source, home), kindText(one.kind));
        if (one.destination)
            text += QStringLiteral(" → ") + crumbText(one.destination->parent_path(), home);
        m_never->addWidget(rowWith(text, shown(one.source), again));
    }
    if (m_ports.agent.never.get().empty())
        m_never->addWidget(makeSecondary(
            QStringLiteral("Leer. Was du bei einem Vorschlag mit „Nicht mehr vorschlagen“ ausblendest, steht hier."),
            this));
}

void AgentSettingsSheet::buildUpdates()
{
    addHead(QStringLiteral("Updates"));
    content()->addWidget(
        makeSecondary(QStringLiteral("Diese Funktion kommt noch. Neue Versionen bekommst du bis dahin dort, woher du "
                                     "%1 hast.")
                          .arg(Edition::name()),
                      this));
}

} // namespace brellin
