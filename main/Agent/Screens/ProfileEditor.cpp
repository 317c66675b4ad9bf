#include "Agent/Screens/ProfileEditor.h"

#include "Agent/Analysis/ProtectedEntries.h"
#include "Agent/Screens/DiscardQuestion.h"
#include "Agent/Screens/FolderField.h"
#include "Agent/Screens/NoticeBar.h"
#include "Base/AbandonablePool.h"
#include "Base/CommaList.h"
#include "Guard/PathTexts.h"
#include "Guard/ProtectedPath.h"
#include "Look/Buttons.h"
#include "Look/Labels.h"
#include "Look/Theme.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSpinBox>

#include <algorithm>

namespace brellin {

namespace {

QString sheetTitle(const FolderProfile &profile, ProfileEditor::Purpose purpose)
{
    return purpose == ProfileEditor::Purpose::ConfirmDetected
               ? QStringLiteral("Software-Projekt erkannt: „%1“").arg(profile.name)
               : QStringLiteral("Schutz von „%1“").arg(profile.name);
}

QLineEdit *field(const QString &text, const QString &accessibleName, const QString &objectName, QWidget *parent)
{
    auto *const made = new QLineEdit(text, parent);
    made->setObjectName(objectName);
    made->setAccessibleName(accessibleName);
    return made;
}

/// "Archivieren nach [30] Tagen ohne Nutzung"
QSpinBox *addDays(QVBoxLayout *column, const QString &before, const QString &behind, int value,
                  const QString &objectName, QWidget *parent)
{
    auto *const row = new QHBoxLayout;
    row->setSpacing(scaled(8));
    auto *const days = new QSpinBox(parent);
    days->setObjectName(objectName);
    days->setAccessibleName(before + QStringLiteral(" … ") + behind);
    // Extend the range to a stored value outside of it.
    days->setRange(std::min(value, 0), std::max(value, 3650));
    days->setSpecialValueText(value < 0 ? QString() : QStringLiteral("nie"));
    days->setValue(value);
    days->setFixedWidth(scaled(70));
    row->addWidget(new TextLabel(before, Token::Text, 1, QFont::Normal, parent));
    row->addWidget(days);
    row->addWidget(makeBody(behind, parent), 1);
    column->addLayout(row);
    return days;
}

} // namespace

ProfileEditor::ProfileEditor(const AgentPorts &ports, const FolderProfile &profile, Purpose purpose, Done done,
                             QWidget *window)
    : SheetFrame(sheetTitle(profile, purpose), shownFromHome(profile.root(), ports.services.folders.home), {720, 640},
                 window)
    , m_ports(ports)
    , m_profile(profile)
    , m_done(std::move(done))
    , m_problem(new NoticeBar({}, QStringLiteral("profileProblem"), this))
    , m_pool(abandonablePool())
{
    setObjectName(QStringLiteral("profileEditor"));
    content()->addWidget(m_problem);
    content()->addWidget(makeHeading(QStringLiteral("Name"), this));
    m_name = field(profile.name, QStringLiteral("Name"), QStringLiteral("profileName"), this);
    content()->addWidget(m_name);
    buildEntries();
    buildTidying();
    content()->addStretch(1);
    buildButtons(purpose);
    m_opened = edited();
}

void ProfileEditor::buildEntries()
{
    content()->addSpacing(scaled(8));
    content()->addWidget(makeHeading(QStringLiteral("Geschützt"), this));
    content()->addWidget(
        makeSecondary(QStringLiteral("Geschützte Einträge werden nie verschoben, umbenannt oder gelöscht."), this));
    m_entryRows = new QVBoxLayout;
    m_entryRows->setSpacing(scaled(6));
    content()->addLayout(m_entryRows);
    buildNoEntries();
    for (const ProtectedEntry &entry : m_profile.protectedEntries)
        addEntry(entry);
    tellWhatIsProtected();
    auto *const row = new QHBoxLayout;
    QPushButton *const folder = makeButton(QStringLiteral("Ordner hinzufügen …"), ButtonKind::Link,
                                           QStringLiteral("profileAddFolder"), this, QStringLiteral("plus"));
    QPushButton *const file = makeButton(QStringLiteral("Datei hinzufügen …"), ButtonKind::Link,
                                         QStringLiteral("profileAddFile"), this, QStringLiteral("plus"));
    row->addWidget(folder);
    row->addWidget(file);
    row->addStretch(1);
    content()->addLayout(row);
    const QString question = QStringLiteral("Was soll geschützt werden?");
    const auto chosen = [this](const Location &entry) { addChosen(entry); };
    connect(folder, &QPushButton::clicked, this, [this, question, chosen] {
        m_ports.askForFolder(this, {.purpose = {}, .title = question, .start = m_profile.root()}, chosen);
    });
    connect(file, &QPushButton::clicked, this,
            [this, question, chosen] { chooseFile(this, question, m_profile.root(), chosen); });
}

/// A warning, since a profile without entries looks as if it protected the folder.
void ProfileEditor::buildNoEntries()
{
    m_noEntries =
        new NoticeBar(QStringLiteral("Einträge des Ordners vorschlagen"), QStringLiteral("profileNoEntries"), this);
    content()->addWidget(m_noEntries);
    connect(m_noEntries, &NoticeBar::clicked, this, &ProfileEditor::detectEntries);
}

void ProfileEditor::tellWhatIsProtected()
{
    m_noEntries->tell(m_entries.empty() ? QStringLiteral("Ohne Einträge schützt dieses Profil nichts.") : QString());
}

void ProfileEditor::detectEntries()
{
    if (m_detection)
        return;
    m_detection = std::make_unique<Job<std::vector<ProtectedEntry>>>();
    m_detection->start(
        *m_pool, [root = m_profile.root()](JobControl &control) { return detectProtected(root, &control); },
        [this](const std::vector<ProtectedEntry> &found) {
            m_detection.reset();
            for (const ProtectedEntry &entry : found) {
                // The user may have added some meanwhile.
                if (std::ranges::find(m_entries, entry.path, &EntryRow::given) == m_entries.end())
                    addEntry(entry);
            }
            if (found.empty())
                m_noEntries->tell(QStringLiteral("In diesem Ordner fällt nichts auf, was geschützt werden müsste."));
        });
}

void ProfileEditor::addEntry(const ProtectedEntry &entry)
{
    auto *const held = new QWidget(this);
    auto *const row = new QHBoxLayout(held);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(scaled(8));
    QLineEdit *const path =
        field(entry.path, QStringLiteral("Geschützter Eintrag"), QStringLiteral("profileEntryPath"), held);
    QLineEdit *const reason = field(entry.reason, QStringLiteral("Grund"), QStringLiteral("profileEntryReason"), held);
    reason->setPlaceholderText(QStringLiteral("Grund"));
    auto *const removal =
        new SymbolButton(QStringLiteral("circle-minus"), QStringLiteral("Nicht mehr schützen: %1").arg(entry.path),
                         QStringLiteral("profileEntryRemove"), held, Token::Secondary);
    row->addWidget(path, 1);
    row->addWidget(reason, 1);
    row->addWidget(removal);
    m_entryRows->addWidget(held);
    m_entries.push_back({entry.id, entry.path, held, path, reason});
    tellWhatIsProtected();
    connect(removal, &QToolButton::clicked, this, [this, held] {
        std::erase_if(m_entries, [held](const EntryRow &one) { return one.row == held; });
        held->hide();
        held->deleteLater();
        tellWhatIsProtected();
    });
}

void ProfileEditor::addChosen(const Location &entry)
{
    const std::optional<Location> relative = m_profile.relative(entry);
    if (!relative)
        return m_problem->tell(QStringLiteral("„%1“ liegt nicht in diesem Projekt.").arg(shownName(entry)),
                               Token::Danger, Token::DangerSoft);
    m_problem->tell({});
    addEntry({.path = textOf(*relative), .reason = {}});
}

void ProfileEditor::buildTidying()
{
    content()->addSpacing(scaled(10));
    m_tidy = new QCheckBox(
        QStringLiteral("Den Rest aufräumen: nicht geschützte Ordner und Dateien in Sammelordner verschieben"), this);
    m_tidy->setObjectName(QStringLiteral("profileTidy"));
    m_tidy->setChecked(m_profile.tidyAllowed);
    content()->addWidget(m_tidy);
    content()->addWidget(makeHeading(QStringLiteral("Sammelordner"), this));
    QStringList groups;
    for (const QString &group : m_profile.groups)
        groups << group;
    m_groups =
        field(groups.join(QStringLiteral(", ")), QStringLiteral("Sammelordner"), QStringLiteral("profileGroups"), this);
    m_groups->setPlaceholderText(QStringLiteral("Unterlagen, Medien, Archiv"));
    content()->addWidget(m_groups);
    m_archiveDays =
        addDays(content(), QStringLiteral("Archivieren nach"), QStringLiteral("Tagen ohne Nutzung → Archiv › Jahr"),
                m_profile.archiveAfterDays, QStringLiteral("profileArchiveDays"), this);
    m_videoDays = addDays(content(), QStringLiteral("Nie geöffnete große Videos (über 20 MB) nach"),
                          QStringLiteral("Tagen zum Löschen vorschlagen"), m_profile.suggestDeleteUnusedVideosDays,
                          QStringLiteral("profileVideoDays"), this);
    const auto enable = [this](bool on) {
        m_groups->setEnabled(on);
        m_archiveDays->setEnabled(on);
    };
    connect(m_tidy, &QCheckBox::toggled, this, enable);
    enable(m_profile.tidyAllowed);
}

void ProfileEditor::buildButtons(Purpose purpose)
{
    QPushButton *const cancel =
        makeButton(QStringLiteral("Abbrechen"), ButtonKind::Usual, QStringLiteral("profileCancel"), this);
    QPushButton *const confirm = makeButton(purpose == Purpose::ConfirmDetected ? QStringLiteral("Schützen und weiter")
                                                                                : QStringLiteral("Sichern"),
                                            ButtonKind::Primary, QStringLiteral("profileSave"), this);
    buttons()->addWidget(cancel);
    buttons()->addWidget(confirm);
    connect(cancel, &QPushButton::clicked, this, &ProfileEditor::escape);
    connect(confirm, &QPushButton::clicked, this, &ProfileEditor::save);
}

FolderProfile ProfileEditor::edited() const
{
    FolderProfile copy = m_profile;
    if (const QString name = m_name->text().trimmed(); !name.isEmpty())
        copy.name = name;
    copy.protectedEntries.clear();
    for (const EntryRow &row : m_entries) {
        if (const QString path = row.path->text(); !path.trimmed().isEmpty())
            copy.protectedEntries.push_back({row.id, path, row.reason->text().trimmed()});
    }
    const QStringList groups = commaList(m_groups->text());
    copy.groups.assign(groups.begin(), groups.end());
    copy.tidyAllowed = m_tidy->isChecked();
    copy.archiveAfterDays = m_archiveDays->value();
    copy.suggestDeleteUnusedVideosDays = m_videoDays->value();
    return copy;
}

/// The copy with all entry paths validated and made relative.
Result<FolderProfile> ProfileEditor::checked() const
{
    FolderProfile copy = edited();
    for (ProtectedEntry &entry : copy.protectedEntries) {
        const auto row = std::ranges::find(m_entries, entry.id, &EntryRow::id);
        const bool given = row != m_entries.end() && row->given == entry.path;
        entry.path = TRY(protectedPath(copy, entry.path, given ? EdgeBlanks::OfTheName : EdgeBlanks::Typed));
    }
    return copy;
}

void ProfileEditor::save()
{
    const Result<FolderProfile> profile = checked();
    if (!profile)
        return m_problem->tell(profile.error().message, Token::Danger, Token::DangerSoft);
    if (const Result<void> taken = m_done(*profile); !taken)
        return m_problem->tell(taken.error().message, Token::Danger, Token::DangerSoft);
    close();
}

void ProfileEditor::escape()
{
    if (edited() == m_opened)
        return discard();
    YesNoSheet *const question = makeDiscardQuestion(
        QStringLiteral("Was du am Schutz von „%1“ geändert hast, geht verloren.").arg(m_opened.name), this);
    connect(question, &YesNoSheet::accepted, this, &ProfileEditor::discard);
    question->open();
}

void ProfileEditor::discard()
{
    (void)m_done(std::nullopt);
    close();
}

} // namespace brellin
